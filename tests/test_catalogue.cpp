// The English catalogue and the images, as they are compiled into the program.

#include "app/product.h"
#include "tests/catalogue_source.h"
#include "tests/test_dir.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QResource>
#include <QSet>
#include <QTest>
#include <QTranslator>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {

/// How many messages a compiled catalogue holds: it has a section with eight bytes for each.
qsizetype compiled_count(const QByteArray& catalogue)
{
    constexpr qsizetype magic_size = 16;
    constexpr qsizetype head_size = 5; // a tag of one byte, the size of the section in four
    constexpr char hashes = 0x42;
    for (qsizetype at = magic_size; at + head_size <= catalogue.size();) {
        const auto size = qFromBigEndian<quint32>(catalogue.constData() + at + 1);
        if (catalogue[at] == hashes) {
            return size / 8;
        }
        at += head_size + size;
    }
    return -1;
}

QStringList keys(const QList<Message>& messages)
{
    QStringList all;
    for (const Message& message : messages) {
        all.append(message.key());
    }
    all.sort();
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
    void looks_up_data();
    void looks_up();
    void images_data();
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

    QFile compiled(QString::fromLatin1(product::english_catalogue));
    QVERIFY(compiled.open(QIODevice::ReadOnly));
    QCOMPARE(compiled_count(compiled.readAll()), 116);
    const QResource resource(u":/tavrel_en.qm"_s);
    QCOMPARE(resource.size(), compiled.size());
    QCOMPARE(resource.compressionAlgorithm(), QResource::NoCompression);
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
    for (const auto* room : {"app", "tree", "engine", "dialogs", "platform"}) {
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

void TestCatalogue::looks_up_data()
{
    QTest::addColumn<QByteArray>("context");
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<int>("n");
    QTest::addColumn<QString>("shown");

    const auto add = [](const char* name, const char* context, const char* source, int n,
                        const QString& shown) {
        QTest::newRow(name) << QByteArray(context) << QByteArray(source) << n << shown;
    };
    const char* const one = "Fini. %n fichier traité";
    const char* const several = "Fini. %n fichiers traités";
    add("none", "MyTreeWidget", one, 0, u"Done. 0 files processed"_s);
    add("one", "MyTreeWidget", one, 1, u"Done. 1 file processed"_s);
    add("two", "MyTreeWidget", several, 2, u"Done. 2 files processed"_s);
    add("twenty-one", "MyTreeWidget", several, 21, u"Done. 21 files processed"_s);
    add("unit", "MyTreeWidget", " Ko", -1, u" Kb"_s);
    add("same letters, not the unit", "MyTreeWidget", "Ko", -1, u"Ko"_s);
    add("one text, two contexts", "FenRes", "Ok", -1, u"OK"_s);
    add("the other context", "FenCheck", "Ok", -1, u"Ok"_s);
    add("accent missing", "MainFen", "Reinitialiser", -1, u"Reinitialiser"_s);
    add("blank missing", "MyTreeWidget", "Manquant => %1", -1, u"Manquant => %1"_s);
    add("misspelling mended", "MainFen", "Copier le résultat", -1, u"Copier le résultat"_s);
    add("wrong context", "FenOpt", "Comparer", -1, u"Comparer"_s);
}

void TestCatalogue::looks_up()
{
    QFETCH(QByteArray, context);
    QFETCH(QByteArray, source);
    QFETCH(int, n);
    QFETCH(QString, shown);
    QCOMPARE(QCoreApplication::translate(context, source, nullptr, n), shown);
}

void TestCatalogue::images_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("close.png") << 24;
    QTest::newRow("horizontal.png") << 32;
    QTest::newRow("logo.png") << 128;
    QTest::newRow("ok.png") << 32;
    QTest::newRow("reset.png") << 32;
    QTest::newRow("vertical.png") << 32;
    QCOMPARE(QDir(u":/res"_s).count(), 6U);
}

void TestCatalogue::images()
{
    QFETCH(int, size);
    const QString path = u":/res/"_s + QString::fromLatin1(QTest::currentDataTag());
    const QImage image(path, "PNG");
    QCOMPARE(image.size(), QSize(size, size));
    QVERIFY(image.hasAlphaChannel());
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(QResource(path).compressionAlgorithm(), QResource::NoCompression);
}

QTEST_MAIN(TestCatalogue)
#include "test_catalogue.moc"
