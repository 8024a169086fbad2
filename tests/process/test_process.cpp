// The process ends at once whatever it is doing, loses nothing by it, and can run for days.

#include "dialogs/fenres.h"
#include "platform/process_end.h"
#include "tests/support/scene.h"

#include <csignal>
#include <cstdio>

#include <malloc.h>

namespace {

// What a person calls "at once" is a second; a machine with other work to do is given more.
constexpr int at_once_ms = 15'000;

/// The process that ends, both of its panes at work. Started anew by itself, it only says so.
int work_and_end(const QString& line)
{
    const QSettings settings(u"Tavrel.ini"_s, QSettings::IniFormat);
    if (settings.value(u"MainWindow/lang"_s).toString() == "en"_L1) {
        return QFile(u"started anew"_s).open(QIODevice::WriteOnly) ? 0 : 1;
    }
    const QString cwd = QDir::currentPath();
    platform::quit_on_system_request([] { QCoreApplication::exit(); });
    Scene scene;
    QDir::setCurrent(cwd); // where the settings go
    QTranslator translator;
    scene.window->translator = &translator;
    scene.window->show();
    scene.uses_dialogs = line != "command Options..."_L1;
    QTimer::singleShot(0, scene.window.get(), [&] {
        scene.run(u"lay l/huge=huge r/huge=huge ; call& L HashAll ; call& R HashAll"_s);
        scene.run(u"hold L l/huge ; hold R r/huge"_s);
        std::puts("ready");
        std::fflush(stdout);
        line == "close"_L1 ? void(scene.window->close()) : void(scene.run(line + u'&'));
        line.startsWith("stop"_L1) ? QCoreApplication::quit() : void();
    });
    return QApplication::exec();
}

/// Whether a process has a file or directory open.
bool has_open(const QProcess& process, const QString& path)
{
    const QDir open_files(u"/proc/%1/fd"_s.arg(process.processId()));
    const QStringList names = open_files.entryList(QDir::AllEntries | QDir::System);
    return std::any_of(names.begin(), names.end(), [&](const QString& fd) {
        return QFile::symLinkTarget(open_files.filePath(fd)) == path;
    });
}

} // namespace

class TestProcess : public QObject
{
    Q_OBJECT

  private slots:
    void ends_data();
    void ends();
    void memory_is_flat();
};

void TestProcess::ends_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<int>("number");
    const QString check =
        u"stop& L ; hold L l/huge ; current& L huge ; "
        "check& L %1 \"press Vérifier\" \"press Annuler\""_s.arg(QString(32, u'0'));
    QTest::newRow("quit") << u"command Quitter"_s << 0;
    QTest::newRow("close") << u"close"_s << 0;
    QTest::newRow("language") << u"lang en"_s << 0;
    QTest::newRow("check") << check << 0;
    QTest::newRow("end of a session") << QString() << SIGHUP;
    QTest::newRow("signal below a dialog") << u"command Options..."_s << SIGTERM;
    QTest::newRow("signal, the program hashes") << u"left/huge"_s << SIGINT;
    QTest::newRow("signal, the program starts") << u"left"_s << SIGTERM;
}

void TestProcess::ends()
{
    QFETCH(QString, how);
    QFETCH(int, number);
    TestDir dir;
    if (!dir.createHuge(u"left/huge"_s)) { QSKIP("no sparse files of 1 TiB here"); }
    for (int i = 0; how == "left"_L1 && i < 60'000; ++i) {
        QFile::link(u"huge"_s, dir.filePath(u"left/n%1"_s.arg(i)));
    }
    const bool itself = how.startsWith("left"_L1);
    dir.createDir(u"cwd"_s);
    qputenv("HOME", QFile::encodeName(dir.createDir(u"home"_s)));
    qputenv("TAVREL_END", how.toUtf8());
    QProcess process;
    process.setWorkingDirectory(dir.at(u"cwd"_s));
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QString self = QCoreApplication::applicationFilePath();
    process.start(itself ? QFileInfo(self).path() + u"/tavrel"_s : self,
                  itself ? QStringList(dir.at(u"left"_s)) : QStringList());
    QVERIFY(process.waitForStarted());
    while (itself ? !has_open(process, dir.at(how)) : !process.canReadLine()) {
        process.waitForReadyRead(1);
        QCOMPARE(process.state(), QProcess::Running);
    }
    if (number != 0) { QCOMPARE(::kill(static_cast<pid_t>(process.processId()), number), 0); }
    QVERIFY(process.waitForFinished(at_once_ms));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);

    // Whole, and nothing beside it. What ends while it is being built has nothing to save.
    const bool anew = how == "lang en"_L1;
    const QString expected = anew               ? u"Tavrel.ini, started anew"_s
                             : how == "left"_L1 ? dir.entries(u"cwd"_s)
                                                : u"Tavrel.ini"_s;
    QTRY_COMPARE_WITH_TIMEOUT(dir.entries(u"cwd"_s), expected, at_once_ms);
    const QSettings settings(dir.at(u"cwd/Tavrel.ini"_s), QSettings::IniFormat);
    QCOMPARE(settings.value(u"MainWindow/lang"_s).toString(), anew ? u"en"_s : QString());
    QCOMPARE(settings.value(u"App/tree1"_s).toString().endsWith("/l"_L1), !itself);
}

// Results dialogs live as long as their window, and are no part of what a comparison leaves.
void TestProcess::memory_is_flat()
{
    constexpr int comparisons = 200;
    constexpr int settled_after = 10;
    const auto in_use = [] { return qint64(mallinfo2().uordblks + mallinfo2().hblkhd); };
    if (in_use() == 0) { QSKIP("the allocator of this build tells nothing"); }
    Scene scene;
    for (int i = 0; i < 100; ++i) { scene.run(u"put l/%1 r/%1=%2"_s.arg(i).arg(i % 10)); }
    qint64 settled = 0;
    for (int i = 1; i <= comparisons; ++i) {
        scene.run(u"command \"Comparer Tout\""_s);
        QCOMPARE(find_row(*scene.first, u"99"_s)->background(ColSize).color(), QColor(Qt::red));
        qDeleteAll(scene.window->findChildren<FenRes*>());
        settled = i == settled_after ? in_use() : settled;
    }
    const qint64 each = (in_use() - settled) / (comparisons - settled_after);
    qInfo("after %d comparisons %lld bytes in use, each of %d more left %lld", settled_after,
          static_cast<long long>(settled), comparisons - settled_after,
          static_cast<long long>(each));
    QVERIFY(each < 4096);
}

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    if (qEnvironmentVariableIsSet("TAVREL_END")) {
        return work_and_end(qEnvironmentVariable("TAVREL_END"));
    }
    TestProcess test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_process.moc"
