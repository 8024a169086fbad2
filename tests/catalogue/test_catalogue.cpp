// The English catalogue says what the program says, byte for byte, and is compiled in as it is.

#include "engine/product.h"
#include "tests/support/test_dir.h"

#include <QApplication>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QResource>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

/// The messages of a catalogue's source: "context|source" to the translated forms.
QMap<QString, QStringList> read_messages(const QString& path)
{
    QMap<QString, QStringList> messages;
    QFile file(path);
    [[maybe_unused]] const bool open = file.open(QIODevice::ReadOnly);
    QXmlStreamReader xml(&file);
    QString context;
    QString source;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == "name"_L1) {
            context = xml.readElementText();
        } else if (xml.name() == "source"_L1) {
            source = context + u'|' + xml.readElementText();
            messages[source];
        } else if (xml.name() == "comment"_L1) {
            messages[source] << u"a comment"_s;
        } else if (xml.name() == "numerusform"_L1) {
            messages[source] << xml.readElementText();
        } else if (xml.name() == "translation"_L1 && !messages[source].isEmpty()) {
            messages[source] << u"twice"_s;
        } else if (xml.name() == "translation"_L1) {
            const QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
            if (!source.contains("%n"_L1)) {
                messages[source] << text;
            }
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
    QMap<QString, int> counts;
    for (const auto& [key, forms] : messages.asKeyValueRange()) {
        const QByteArray context = key.section(u'|', 0, 0).toUtf8();
        const QByteArray source = key.section(u'|', 1).toUtf8();
        ++counts[QString::fromUtf8(context)];
        if (!key.contains("%n"_L1)) {
            QCOMPARE(QStringList{translator.translate(context, source)}, forms);
        }
    }
    QCOMPARE(counts.values(), (QList<int>{6, 18, 10, 27, 55})); // by the names of the classes
    QCoreApplication::installTranslator(&translator);
    const auto told = [](const char* source, int n) {
        return QCoreApplication::translate("MyTreeWidget", source, nullptr, n);
    };
    QCOMPARE(told("Fini. %n fichier traité", 0), u"Done. 0 files processed"_s);
    QCOMPARE(told("Fini. %n fichier traité", 1), u"Done. 1 file processed"_s);
    QCOMPARE(told("Fini. %n fichiers traités", 21), u"Done. 21 files processed"_s);
    QCOMPARE(QResource(u":/tavrel_en.qm"_s).compressionAlgorithm(), QResource::NoCompression);
}

void TestCatalogue::agrees_with_the_program()
{
    const QString lupdate = QString::fromLocal8Bit(TAVREL_LUPDATE);
    if (!QFile::exists(lupdate)) {
        QSKIP("lupdate is not there");
    }
    const QString root = QString::fromLocal8Bit(TAVREL_SOURCES);
    const TestDir dir;
    QStringList arguments = {u"-silent"_s, u"-locations"_s, u"none"_s, u"-I"_s, root};
    for (const auto* room : {"app", "tree", "rows", "engine", "dialogs", "platform"}) {
        arguments.append(root + u'/' + QString::fromLatin1(room));
    }
    arguments << u"-ts"_s << dir.filePath(u"found.ts"_s);
    QCOMPARE(QProcess::execute(lupdate, arguments), 0);

    // Two texts are put together from constants, which lupdate does not see.
    QStringList used = read_messages(dir.filePath(u"found.ts"_s)).keys();
    used << u"MainFen|"_s + QString::fromUtf8(product::about_text)
         << u"MyTreeWidget|"_s + QString::fromUtf8(product::checksum_header);
    used.sort();
    QCOMPARE(used, read_messages(QString::fromLocal8Bit(TAVREL_CATALOGUE)).keys());
}

QTEST_MAIN(TestCatalogue)
#include "test_catalogue.moc"
