// The end of the program, whatever it is doing: it comes at once and loses nothing.

#include "tests/test_dir.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QTest>

#include <csignal>

#include <sys/types.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience_ms = 60'000;

// What a person calls "at once" is a second; a machine with other work to do is given more.
constexpr int at_once_ms = 15'000;

} // namespace

class TestEnd : public QObject
{
    Q_OBJECT

  private slots:
    void ends_while_both_panes_work_data();
    void ends_while_both_panes_work();
    void real_program_ends_by_signal_data();
    void real_program_ends_by_signal();
    void signal_during_the_first_listing();

  private:
    bool lay_out(TestDir& dir);
    void start(QProcess& process, TestDir& dir, const QString& program, const QString& how);
};

/// Two directories whose hashing would take hours.
bool TestEnd::lay_out(TestDir& dir)
{
    for (const QString& side : {u"left"_s, u"right"_s}) {
        if (!QFile::resize(dir.createFile(side + u"/huge"_s), qint64(1) << 40)) {
            return false;
        }
    }
    dir.createDir(u"cwd"_s);
    return true;
}

void TestEnd::start(QProcess& process, TestDir& dir, const QString& program, const QString& how)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    environment.insert(u"HOME"_s, dir.createDir(u"home"_s));
    environment.insert(u"TAVREL_END"_s, how);
    environment.insert(u"TAVREL_LEFT"_s, dir.at(u"left"_s));
    environment.insert(u"TAVREL_RIGHT"_s, dir.at(u"right"_s));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(dir.at(u"cwd"_s));
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setProgram(QCoreApplication::applicationDirPath() + u'/' + program);
}

void TestEnd::ends_while_both_panes_work_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<int>("number");
    QTest::newRow("quitting") << u"quit"_s << 0;
    QTest::newRow("closing the window") << u"close"_s << 0;
    QTest::newRow("closing the verify dialog") << u"check"_s << 0;
    QTest::newRow("switching the language") << u"language"_s << 0;
    QTest::newRow("SIGTERM") << u"wait"_s << SIGTERM;
    QTest::newRow("SIGHUP, the end of a session") << u"wait"_s << SIGHUP;
    QTest::newRow("SIGTERM, a dialog is open") << u"options"_s << SIGTERM;
}

void TestEnd::ends_while_both_panes_work()
{
    QFETCH(QString, how);
    QFETCH(int, number);
    TestDir dir;
    if (!lay_out(dir)) {
        QSKIP("no sparse files of 1 TiB here");
    }
    QProcess process;
    start(process, dir, u"end_program"_s, how);
    process.start();
    QVERIFY(process.waitForStarted(patience_ms));
    while (!process.canReadLine()) {
        QVERIFY(process.waitForReadyRead(patience_ms));
    }
    QCOMPARE(process.readLine(), QByteArray("ready\n"));
    QElapsedTimer timer;
    timer.start();
    if (number != 0) {
        QCOMPARE(::kill(static_cast<pid_t>(process.processId()), number), 0);
    }
    QVERIFY(process.waitForFinished(at_once_ms));
    qInfo("ended within %lld ms", static_cast<long long>(timer.elapsed()));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);

    // Whole, and nothing beside it.
    const bool restarted = how == "language"_L1;
    if (restarted) {
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(dir.at(u"cwd/started anew"_s)), patience_ms);
    }
    QStringList expected = {u"first start"_s, u"Tavrel.ini"_s};
    if (restarted) {
        expected.insert(1, u"started anew"_s);
    }
    QCOMPARE(
        QDir(dir.at(u"cwd"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        expected);
    for (const QString& side : {u"left"_s, u"right"_s}) {
        QCOMPARE(QDir(dir.at(side)).entryList(QDir::Files | QDir::Hidden), QStringList{u"huge"_s});
    }
    const QSettings settings(dir.at(u"cwd/Tavrel.ini"_s), QSettings::IniFormat);
    QCOMPARE(settings.value(u"App/tree1"_s).toString(), dir.at(u"left"_s));
    QCOMPARE(settings.value(u"App/tree2"_s).toString(), dir.at(u"right"_s));
    QCOMPARE(settings.value(u"MainWindow/lang"_s).toString(), restarted ? u"en"_s : QString());
}

void TestEnd::real_program_ends_by_signal_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void TestEnd::real_program_ends_by_signal()
{
    QFETCH(int, number);
    TestDir dir;
    if (!lay_out(dir)) {
        QSKIP("no sparse files of 1 TiB here");
    }
    QProcess process;
    start(process, dir, u"tavrel"_s, {});
    process.setArguments({dir.at(u"left"_s)});
    process.start();
    QVERIFY(process.waitForStarted(patience_ms));
    // It has the file open: the job runs.
    const QDir open_files(u"/proc/%1/fd"_s.arg(process.processId()));
    QTRY_VERIFY_WITH_TIMEOUT(
        [&] {
            for (const QString& fd : open_files.entryList(QDir::AllEntries | QDir::System)) {
                if (QFile::symLinkTarget(open_files.filePath(fd)) == dir.at(u"left/huge"_s)) {
                    return true;
                }
            }
            return false;
        }(),
        patience_ms);
    QCOMPARE(::kill(static_cast<pid_t>(process.processId()), number), 0);
    QVERIFY(process.waitForFinished(at_once_ms));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    const QSettings settings(dir.at(u"cwd/Tavrel.ini"_s), QSettings::IniFormat);
    QVERIFY(settings.contains(u"MainWindow/size"_s));
    // Started on a path, it keeps the directory of before.
    QVERIFY(!settings.contains(u"App/tree1"_s));
}

// The window is being built, and its event loop is not the last one to run.
void TestEnd::signal_during_the_first_listing()
{
    TestDir dir;
    dir.createFile(u"large/seed"_s);
    for (int i = 0; i < 60'000; ++i) {
        ::link(QFile::encodeName(dir.at(u"large/seed"_s)).constData(),
               QFile::encodeName(dir.at(u"large/n%1"_s.arg(i))).constData());
    }
    dir.createDir(u"cwd"_s);
    {
        QSettings settings(dir.at() + u"/cwd/Tavrel.ini"_s, QSettings::IniFormat);
        settings.setValue(u"App/rem_dir"_s, true);
        settings.setValue(u"App/tree1"_s, dir.at(u"large"_s));
        settings.setValue(u"App/tree2"_s, dir.at(u"large"_s));
    }
    QProcess process;
    start(process, dir, u"tavrel"_s, {});
    process.start();
    QVERIFY(process.waitForStarted(patience_ms));
    // It reads the directory.
    const QDir open_files(u"/proc/%1/fd"_s.arg(process.processId()));
    const auto is_listing = [&] {
        for (const QString& fd : open_files.entryList(QDir::AllEntries | QDir::System)) {
            if (QFile::symLinkTarget(open_files.filePath(fd)) == dir.at(u"large"_s)) {
                return true;
            }
        }
        return false;
    };
    while (!is_listing() && process.state() == QProcess::Running) {
        process.waitForFinished(1);
    }
    process.waitForFinished(60); // longer than it waits before it lets events in
    QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGTERM), 0);
    QVERIFY(process.waitForFinished(at_once_ms));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestEnd)
#include "test_end.moc"
