// The checksum-file format: what is read from a file, and how a file is written.

#include "engine/checksum_file.h"
#include "tests/test_dir.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QMap>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;
using engine::Replace;

namespace {

using Digests = QMap<QString, QString>;

const QByteArray digest_a(32, 'a');
const QByteArray digest_b(32, 'b');

/// The most memory that this process ever had, in KiB; 0 where the system does not tell.
qint64 memory_peak()
{
    QFile status(u"/proc/self/status"_s);
    const QByteArray text = status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
    const qsizetype at = text.indexOf("VmHWM:");
    return at < 0 ? 0 : text.mid(at + 6).split('k').first().trimmed().toLongLong();
}

#ifdef __SANITIZE_ADDRESS__
constexpr bool freed_memory_is_kept = true;
#else
constexpr bool freed_memory_is_kept = false;
#endif

} // namespace

class TestChecksumFormat : public QObject
{
    Q_OBJECT

  private slots:
    void checksum_files_are_read_data();
    void checksum_files_are_read();
    void endless_lines_cost_no_memory();
    void written_whole_or_not_at_all_data();
    void written_whole_or_not_at_all();
    void full_disk_leaves_the_older_file();
};

void TestChecksumFormat::checksum_files_are_read_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<Digests>("expected");
    const QByteArray a = digest_a + "  ";
    const QByteArray b = digest_b + "  ";
    const auto row = [](const char* title, const QByteArray& content,
                        const QList<std::pair<QString, QByteArray>>& entries) {
        Digests digests;
        for (const auto& [name, digest] : entries) {
            digests.insert(name, QString::fromLatin1(digest));
        }
        QTest::newRow(title) << content << digests;
    };
    row("comments and blank lines", "# " + a + "z\n\n" + a + "x\n" + b + "y\n",
        {{u"x"_s, digest_a}, {u"y"_s, digest_b}});
    row("CR LF", a + "x\r\n\r\n" + b + "y\r\n", {{u"x"_s, digest_a}, {u"y"_s, digest_b}});
    row("CR alone parts nothing", a + "x\r" + b + "y\n",
        {{u"x\r"_s + QString::fromLatin1(b) + u"y"_s, digest_a}});
    row("no final newline", a + "x", {{u"x"_s, digest_a}});
    row("asterisk", digest_a + " *x\n" + digest_b + " **y\n",
        {{u"x"_s, digest_a}, {u"*y"_s, digest_b}});
    row("blanks around and within", digest_a + "\t x  y \t\n", {{u"x  y"_s, digest_a}});
    row("upper case is kept", digest_a.toUpper() + "  x\n", {{u"x"_s, digest_a.toUpper()}});
    row("64 digits", digest_a + digest_b + "  x\n", {{u"x"_s, digest_a + digest_b}});
    row("31 digits", digest_a.chopped(1) + "  x\n", {});
    row("no hexadecimal digit", digest_a.chopped(1) + "g  x\n", {});
    row("digits of another script", QString(32, QChar(0x0661)).toUtf8() + "  x\n", {});
    row("leading blank", ' ' + a + "x\n", {});
    row("empty", "", {});
    row("name twice", a + "x\n" + b + "x\n", {{u"x"_s, digest_b}});
    row("name with a directory", a + "sub/x\n", {{u"sub/x"_s, digest_a}});
    row("digest alone", digest_a + "\n", {{QString(), digest_a}});
    row("UTF-8 with mark", "\xEF\xBB\xBF" + a + "\xC3\xA9\n", {{u"é"_s, digest_a}});
    row("UTF-16",
        QStringEncoder(QStringConverter::Utf16LE,
                       QStringConverter::Flag::WriteBom)(QString::fromLatin1(a) + u"é\r\n"_s),
        {{u"é"_s, digest_a}});
    row("NUL", '\0' + a + "x\n" + a + QByteArray("y\0z", 3) + '\n', {{u"y\0z"_s, digest_a}});
    QByteArray junk(0x400000, Qt::Uninitialized);
    QRandomGenerator(42).fillRange(reinterpret_cast<quint32*>(junk.data()), junk.size() / 4);
    row("junk", junk, {});
    const QByteArray long_name(4096, 'n');
    row("longest path", a + long_name + '\n', {{QString::fromLatin1(long_name), digest_a}});
}

void TestChecksumFormat::checksum_files_are_read()
{
    QFETCH(QByteArray, content);
    QFETCH(Digests, expected);
    TestDir dir;
    Digests full;
    for (const auto& [name, digest] : expected.asKeyValueRange()) {
        full.insert(dir.at() + u'/' + name, digest);
    }
    QBuffer buffer(&content);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QCOMPARE(engine::read_checksum_file(buffer, dir.path()), full);
}

void TestChecksumFormat::endless_lines_cost_no_memory()
{
    const QList<std::pair<QByteArray, char>> lines = {
        {"", 'a'}, {digest_a + "  ", 'n'}, {"", '\0'}};
    for (const auto& [head, filler] : lines) {
        const QByteArray tail = '\n' + digest_b + "  after\n";
        QByteArray content(100'000'000, filler);
        content.replace(0, head.size(), head);
        content.replace(content.size() - tail.size(), tail.size(), tail);
        QBuffer buffer(&content);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        const QString root = QDir::rootPath();
        const qint64 before = memory_peak();
        const Digests digests = engine::read_checksum_file(buffer, root);
        QCOMPARE(digests, (Digests{{root + u"after"_s, QString::fromLatin1(digest_b)}}));
        if (!freed_memory_is_kept) {
            QCOMPARE_LT(memory_peak() - before, 30'000);
        }
    }
}

void TestChecksumFormat::written_whole_or_not_at_all_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("replace");
    QTest::addColumn<bool>("written");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("new") << u"new"_s << false << true << u"é\n"_s.toLocal8Bit();
    QTest::newRow("existing, kept") << u"old"_s << false << false << QByteArray("old");
    QTest::newRow("existing, replaced") << u"old"_s << true << true << u"é\n"_s.toLocal8Bit();
    QTest::newRow("directory") << u"dir"_s << true << false << QByteArray();
    QTest::newRow("in no directory") << u"gone/new"_s << true << false << QByteArray();
    QTest::newRow("in a read-only directory") << u"locked/new"_s << true << false << QByteArray();
}

void TestChecksumFormat::written_whole_or_not_at_all()
{
    QFETCH(QString, target);
    QFETCH(bool, replace);
    TestDir dir;
    dir.createFile(u"old"_s, "old");
    dir.createDir(u"dir"_s);
    if (permissions_hold()) {
        QFile::setPermissions(dir.createDir(u"locked"_s), QFile::ReadOwner | QFile::ExeOwner);
    } else if (!QFile::link(u"/proc"_s, dir.filePath(u"locked"_s))) {
        QSKIP("nothing is read-only to this user");
    }
    QTEST(engine::write_checksum_file(dir.filePath(target), u"é\n"_s,
                                      replace ? Replace::Yes : Replace::No),
          "written");
    QTEST(dir.read(target), "content");
    QCOMPARE(dir.entries(),
             target == "new"_L1 ? u"dir, locked, new, old"_s : u"dir, locked, old"_s);
}

void TestChecksumFormat::full_disk_leaves_the_older_file()
{
    // The disk is full to a second process only, by a limit on the size of its files.
    const char variable[] = "TAVREL_TEST_FULL_DISK";
    if (qEnvironmentVariableIsSet(variable)) {
        const QDir limited(qEnvironmentVariable(variable));
        QVERIFY(engine::write_checksum_file(limited.filePath(u"fits"_s), u"fits"_s, Replace::Yes));
        for (const int size : {12'000, 200'000}) {
            const QString text(size, u'x');
            QVERIFY(!engine::write_checksum_file(limited.filePath(u"old"_s), text, Replace::Yes));
            QVERIFY(!engine::write_checksum_file(limited.filePath(u"new"_s), text, Replace::No));
        }
        return;
    }
    const QString shell = QStandardPaths::findExecutable(u"sh"_s);
    if (shell.isEmpty()) {
        QSKIP("no shell that limits the size of files");
    }
    TestDir dir;
    dir.createFile(u"old"_s, "old");
    QProcess limited;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(variable), dir.path());
    limited.setProcessEnvironment(environment);
    limited.start(shell, {u"-c"_s, u"trap '' XFSZ; ulimit -f 8 && exec \"$0\" \"$1\""_s,
                          QCoreApplication::applicationFilePath(),
                          QString::fromLatin1(QTest::currentTestFunction())});
    QVERIFY(limited.waitForFinished(60000));
    QVERIFY2(limited.exitCode() == 0, limited.readAllStandardOutput().constData());
    QCOMPARE(dir.read(u"fits"_s), "fits");
    QCOMPARE(dir.read(u"old"_s), "old");
    QCOMPARE(dir.entries(), u"fits, old"_s);
}

QTEST_GUILESS_MAIN(TestChecksumFormat)
#include "test_checksum_format.moc"
