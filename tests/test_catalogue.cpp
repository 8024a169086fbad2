// The English catalogue and the images, as they are compiled into the program.

#include "engine/product.h"
#include "tests/catalogue_source.h"
#include "tests/test_dir.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QResource>
#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

QStringList keys(const QList<Message>& messages)
{
    QStringList all;
    for (const Message& message : messages) {
        all.append(message.key());
    }
    return all;
}

/// What stands in one list and not in the other, as a text to show.
QString only_in(const QStringList& list, const QStringList& other)
{
    QStringList rest;
    for (const QString& entry : list) {
        if (!other.contains(entry)) {
            rest.append(entry);
        }
    }
    return rest.join(u'\n');
}

} // namespace

class TestCatalogue : public QObject
{
    Q_OBJECT

  private slots:
    void initTestCase();
    void holds_its_messages();
    void agrees_with_the_program();
    void counts_as_english_does();
    void images();

  private:
    QList<Message> messages;
    QTranslator translator;
};

void TestCatalogue::initTestCase()
{
    messages = read_messages(QString::fromLocal8Bit(TAVREL_CATALOGUE));
    QVERIFY(translator.load(QString::fromLatin1(product::english_catalogue)));
    QCoreApplication::installTranslator(&translator);
}

void TestCatalogue::holds_its_messages()
{
    QMap<QString, int> counts;
    for (const Message& message : messages) {
        ++counts[message.context];
        QVERIFY2(!message.commented, qUtf8Printable(message.key()));
        const QByteArray context = message.context.toUtf8();
        const QByteArray source = message.source.toUtf8();
        for (int form = 0; form < message.forms.size(); ++form) {
            const int n = message.plural ? form + 1 : -1;
            QCOMPARE(translator.translate(context, source, nullptr, n), message.forms[form]);
        }
        QCOMPARE(message.forms.size(), message.plural ? 2 : 1);
    }
    const QMap<QString, int> expected = {{u"MainFen"_s, 27},
                                         {u"MyTreeWidget"_s, 55},
                                         {u"FenOpt"_s, 18},
                                         {u"FenCheck"_s, 6},
                                         {u"FenRes"_s, 10}};
    QCOMPARE(counts, expected);
    QCOMPARE(QResource(u":/tavrel_en.qm"_s).compressionAlgorithm(), QResource::NoCompression);
}

// In both directions, byte for byte.
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
    QList<Message> used = read_messages(dir.filePath(u"found.ts"_s));
    used.append({u"MainFen"_s, QString::fromUtf8(product::about_text)});
    used.append({u"MyTreeWidget"_s, QString::fromUtf8(product::checksum_header)});
    QCOMPARE(only_in(keys(used), keys(messages)), QString());
    QCOMPARE(only_in(keys(messages), keys(used)), QString());
}

void TestCatalogue::counts_as_english_does()
{
    const auto told = [](const char* source, int n) {
        return QCoreApplication::translate("MyTreeWidget", source, nullptr, n);
    };
    QCOMPARE(told("Fini. %n fichier traité", 0), u"Done. 0 files processed"_s);
    QCOMPARE(told("Fini. %n fichier traité", 1), u"Done. 1 file processed"_s);
    QCOMPARE(told("Fini. %n fichiers traités", 2), u"Done. 2 files processed"_s);
    QCOMPARE(told("Fini. %n fichiers traités", 21), u"Done. 21 files processed"_s);
}

void TestCatalogue::images()
{
    const QMap<QString, int> sizes = {{u"close.png"_s, 24}, {u"horizontal.png"_s, 32},
                                      {u"logo.png"_s, 128}, {u"ok.png"_s, 32},
                                      {u"reset.png"_s, 32}, {u"vertical.png"_s, 32}};
    QCOMPARE(QDir(u":/res"_s).entryList(), sizes.keys());
    for (const auto& [name, size] : sizes.asKeyValueRange()) {
        const QString path = u":/res/"_s + name;
        const QImage image(path, "PNG");
        QCOMPARE(image.size(), QSize(size, size));
        QVERIFY(image.hasAlphaChannel());
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
        QCOMPARE(QResource(path).compressionAlgorithm(), QResource::NoCompression);
    }
}

QTEST_MAIN(TestCatalogue)
#include "test_catalogue.moc"
