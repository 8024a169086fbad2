// The English catalogue says what the program says, byte for byte, and is compiled in as it is.

#include "engine/product.h"
#include "tests/support/test_dir.h"

#include <QtTest>
#include <QtWidgets>

namespace {

/// The messages of a catalogue's source, "context|message" to the translation.
QMap<QString, QString> read_messages(const QString& path)
{
    QMap<QString, QString> messages;
    QFile file(path);
    [[maybe_unused]] const bool open = file.open(QIODevice::ReadOnly);
    QXmlStreamReader xml(&file);
    QString context;
    QString message;
    while (!xml.atEnd()) {
        xml.readNextStartElement();
        const QString name = xml.isStartElement() ? xml.name().toString() : QString();
        if (name == "name"_L1) {
            context = xml.readElementText() + u'|';
        } else if (name == "source"_L1) {
            message = context + xml.readElementText();
        } else if (name == "translation"_L1) {
            messages[message] += xml.readElementText(QXmlStreamReader::IncludeChildElements);
        }
    }
    return messages;
}

} // namespace

class TestCatalogue : public QObject
{
    Q_OBJECT

  private slots:
    void translates_every_message();
    void agrees_with_the_program();
};

void TestCatalogue::translates_every_message()
{
    QTranslator translator;
    QVERIFY(translator.load(QString::fromLatin1(product::english_catalogue)));
    const auto messages = read_messages(QString::fromLocal8Bit(TAVREL_CATALOGUE));
    QCOMPARE(messages.size(), 116);
    for (const auto& [key, text] : messages.asKeyValueRange()) {
        const QByteArray context = key.section(u'|', 0, 0).toUtf8();
        const QString told = translator.translate(context, key.section(u'|', 1).toUtf8());
        QVERIFY2(told == text || key.contains("%n"_L1), qUtf8Printable(key));
    }
    QCoreApplication::installTranslator(&translator);
    const auto told = [](const char* source, int n) {
        return QCoreApplication::translate("MyTreeWidget", source, nullptr, n);
    };
    QCOMPARE(told("Fini. %n fichier traité", 0) + told("Fini. %n fichier traité", 1) +
                 told("Fini. %n fichiers traités", 21),
             u"Done. 0 files processedDone. 1 file processedDone. 21 files processed"_s);
    QCOMPARE(QResource(u":/tavrel_en.qm"_s).compressionAlgorithm(), QResource::NoCompression);
}

void TestCatalogue::agrees_with_the_program()
{
    const QString lupdate = QString::fromLocal8Bit(TAVREL_LUPDATE);
    if (!QFile::exists(lupdate)) { QSKIP("lupdate is not there"); }
    const QString root = QString::fromLocal8Bit(TAVREL_SOURCES) + u'/';
    const TestDir dir;
    const QString found = dir.filePath(u"found.ts"_s);
    QStringList arguments = {u"-silent"_s, u"-I"_s, root, u"-ts"_s, found};
    for (const char* room : {"app", "tree", "rows", "engine", "dialogs", "platform"}) {
        arguments.prepend(root + QString::fromLatin1(room));
    }
    QCOMPARE(QProcess::execute(lupdate, arguments), 0);

    // Two texts are put together from constants, which lupdate does not see.
    auto used = read_messages(found);
    used[u"MainFen|"_s + QString::fromUtf8(product::about_text)];
    used[u"MyTreeWidget|"_s + QString::fromUtf8(product::checksum_header)];
    QCOMPARE(used.keys(), read_messages(QString::fromLocal8Bit(TAVREL_CATALOGUE)).keys());
}

QTEST_MAIN(TestCatalogue)
#include "test_catalogue.moc"
