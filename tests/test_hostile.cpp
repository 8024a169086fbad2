// File systems at their worst: what changes, vanishes or fills up under the program's hands, and
// what was never meant to be read. Nothing may hang, crash, or be written where it does not belong.

#include "engine/checksum_file.h"
#include "engine/hash_job.h"
#include "engine/listing.h"
#include "platform/sequential_file.h"
#include "tests/modal_driver.h"
#include "tests/pane_fixture.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>
#include <QUrl>

#include <array>
#include <csignal>
#include <cstdio>
#include <functional>
#include <thread>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 huge_size = qint64(1) << 40;

QByteArray native(const QString& path)
{
    return QFile::encodeName(path);
}

bool make_socket(const QString& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray name = native(path);
    if (name.size() >= static_cast<qsizetype>(sizeof address.sun_path)) {
        return false;
    }
    std::copy(name.begin(), name.end(), address.sun_path);
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const bool bound = ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(fd);
    return bound;
}

/// What a job says of one file.
engine::FileResult hash_file(const QString& path,
                             const std::function<void(const engine::StopFlag&)>& started = {})
{
    engine::HashPlan plan;
    plan.steps = {{engine::HashStep::Kind::File, 0, path}};
    const engine::StopFlag stop = engine::make_stop_flag();
    engine::FileResult result;
    engine::run_hash_job(plan, stop, [&](engine::JobMessage&& message) {
        if (std::holds_alternative<engine::FileStarted>(message) && started) {
            started(stop);
        } else if (auto* ended = std::get_if<engine::FileEnded>(&message)) {
            result = std::move(ended->result);
        }
    });
    return result;
}

/// How many files a job hashes below a directory, and how many directories it finds.
struct Walked
{
    int files = 0;
    int directories = 0;
};

Walked walk(const QString& path, const std::function<void(const Walked&)>& on_directory = {})
{
    engine::HashPlan plan;
    plan.steps = {{engine::HashStep::Kind::Walk, 0, path}};
    plan.next_row = 1;
    Walked walked;
    engine::run_hash_job(plan, nullptr, [&](engine::JobMessage&& message) {
        if (std::holds_alternative<engine::DirectoryFound>(message)) {
            ++walked.directories;
            if (on_directory) {
                on_directory(walked);
            }
        } else if (std::holds_alternative<engine::FileFound>(message)) {
            ++walked.files;
        }
    });
    return walked;
}

/// Runs something in a process of its own, which a limit or a mount cannot outlive; answers its
/// exit code.
int in_child(const std::function<int()>& run)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(run());
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void drop_on(MyTreeWidget& pane, const QStringList& paths)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& path : paths) {
        urls.append(QUrl::fromLocalFile(path));
    }
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(pane.viewport(), &enter);
    QDropEvent event(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(pane.viewport(), &event);
    QVERIFY(event.isAccepted());
}

} // namespace

class TestHostile : public QObject
{
    Q_OBJECT

  private slots:
    void no_file_makes_a_job_wait_data();
    void no_file_makes_a_job_wait();
    void names_that_are_no_text();
    void files_of_the_kernel();
    void two_thousand_levels();
    void links_back_and_forth();
    void file_changes_while_it_is_read_data();
    void file_changes_while_it_is_read();
    void directory_goes_while_it_is_walked();
    void huge_file_stops_at_once();
    void vanished_directory_is_not_the_root();
    void full_file_system_leaves_nothing_behind();
    void forbidden_directory_is_reported();
    void pipe_in_place_of_a_checksum_file();
    void unusable_checksum_file_leaves_the_controls();
    void checksum_files_are_not_written_into_the_root_data();
    void checksum_files_are_not_written_into_the_root();
    void checksum_file_asked_for_during_another_job_data();
    void checksum_file_asked_for_during_another_job();
    void refused_job_does_not_end_the_next();
    void dropped_rows_may_die_during_a_listing();
    void reset_during_a_job_makes_nothing_green();
};

// Put in the place of a file after it was listed.
void TestHostile::no_file_makes_a_job_wait_data()
{
    using Put = std::function<bool(const QString&)>;
    QTest::addColumn<Put>("put");
    QTest::newRow("pipe") << Put(
        [](const QString& path) { return ::mkfifo(native(path).constData(), 0600) == 0; });
    QTest::newRow("socket") << Put(make_socket);
    QTest::newRow("directory") << Put([](const QString& path) { return QDir().mkdir(path); });
    QTest::newRow("link to a pipe") << Put([](const QString& path) {
        return ::mkfifo(native(path + ".pipe"_L1).constData(), 0600) == 0 &&
               QFile::link(path + ".pipe"_L1, path);
    });
    QTest::newRow("link to itself") << Put([](const QString& path) {
        return ::symlink(native(path).constData(), native(path).constData()) == 0;
    });
    QTest::newRow("terminal") << Put(
        [](const QString& path) { return QFile::link(u"/dev/tty"_s, path); });
    QTest::newRow("endless device")
        << Put([](const QString& path) { return QFile::link(u"/dev/zero"_s, path); });
}

void TestHostile::no_file_makes_a_job_wait()
{
    QFETCH(std::function<bool(const QString&)>, put);
    TestDir dir;
    const QString path = dir.createFile(u"file"_s, "x");
    QVERIFY(QFile::remove(path));
    QVERIFY(put(path));
    QCOMPARE(hash_file(path).outcome, engine::FileOutcome::Unreadable);
}

void TestHostile::names_that_are_no_text()
{
    TestDir dir;
    const QByteArray path = native(dir.at()) + "/\xff\xfe.txt";
    const int fd = ::open(path.constData(), O_CREAT | O_WRONLY, 0600);
    if (fd < 0) {
        QSKIP("this file system wants names to be text");
    }
    ::close(fd);
    dir.createFile(QString(255, u'n'), "x");

    const auto entries = engine::list_directory(dir.at(), engine::held_entries);
    // Such a file cannot be named. Where it is listed all the same it must not pass for read.
    for (const engine::Entry& entry : entries) {
        QCOMPARE(hash_file(entry.path).outcome, entry.name.size() == 255
                                                    ? engine::FileOutcome::Digested
                                                    : engine::FileOutcome::Unreadable);
    }
    QCOMPARE(walk(dir.at()).files, entries.size());
    ::unlink(path.constData());
}

void TestHostile::files_of_the_kernel()
{
    // They say that they are empty, or enormous, or regular files when they are not.
    for (const QString& path :
         {u"/proc/self/status"_s, u"/proc/self/mem"_s, u"/proc/self/pagemap"_s, u"/proc/kmsg"_s,
          u"/proc/kcore"_s, u"/sys/kernel/mm/transparent_hugepage/enabled"_s,
          u"/sys/kernel/debug/tracing/trace_pipe"_s}) {
        const engine::FileResult result = hash_file(path, [](const engine::StopFlag& stop) {
            // Enough to show that nothing waits; the enormous ones are never read to their end.
            std::thread([stop] {
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                stop->store(true);
            }).detach();
        });
        QVERIFY2(result.digest.isEmpty() == (result.outcome != engine::FileOutcome::Digested),
                 qPrintable(path));
    }
}

void TestHostile::two_thousand_levels()
{
    constexpr int levels = 2000;
    TestDir dir;
    // Relative steps: the whole path is too long for most calls.
    const QString back = QDir::currentPath();
    QVERIFY(QDir::setCurrent(dir.at()));
    int made = 0;
    while (made < levels && ::mkdir("d", 0700) == 0 && ::chdir("d") == 0) {
        ++made;
    }
    std::fclose(std::fopen("deepest", "w"));
    QDir::setCurrent(back);
    QCOMPARE(made, levels);

    const Walked walked = walk(dir.at());
    // As deep as paths can be written.
    QVERIFY(walked.directories > 1000);

    WindowFixture fixture;
    fixture.first->changeModel(dir.at());
    find_row(*fixture.first, u"d"_s)->setSelected(true);
    fixture.first->HashThis();
    QVERIFY(fixture.wait_idle());
    fixture.first->Reset();
    QCOMPARE(in_child([&] {
                 return ::execlp("rm", "rm", "-rf", native(dir.at(u"d"_s)).constData(), nullptr);
             }),
             0);
}

void TestHostile::links_back_and_forth()
{
    TestDir dir;
    dir.createFile(u"a/file"_s, "x");
    dir.createFile(u"b/file"_s, "y");
    QVERIFY(QFile::link(dir.at(u"b"_s), dir.filePath(u"a/to b"_s)));
    QVERIFY(QFile::link(dir.at(u"a"_s), dir.filePath(u"b/to a"_s)));
    QVERIFY(QFile::link(dir.at(), dir.filePath(u"a/up"_s)));
    const Walked walked = walk(dir.at());
    QVERIFY(walked.files >= 2);

    WindowFixture fixture;
    fixture.first->changeModel(dir.at());
    fixture.first->selectAll();
    fixture.first->HashThis();
    QVERIFY(fixture.wait_idle());
    QCOMPARE(checksum_at(*fixture.first, u"a/file"_s), reference_digest("x"));
}

void TestHostile::file_changes_while_it_is_read_data()
{
    QTest::addColumn<qint64>("before");
    QTest::addColumn<qint64>("after");
    QTest::newRow("truncated") << qint64(4'000'000) << qint64(0x40000);
    QTest::newRow("emptied") << qint64(4'000'000) << qint64(0);
    QTest::newRow("grown") << qint64(100) << qint64(1'000'000);
}

void TestHostile::file_changes_while_it_is_read()
{
    QFETCH(qint64, before);
    QFETCH(qint64, after);
    TestDir dir;
    const QString path = dir.createFile(u"file"_s, QByteArray(before, '\0'));
    const engine::FileResult result =
        hash_file(path, [&](const engine::StopFlag&) { QVERIFY(QFile::resize(path, after)); });
    QCOMPARE(result.outcome, engine::FileOutcome::Digested);
    QCOMPARE(result.digest, reference_digest(QByteArray(after, '\0')));
}

void TestHostile::directory_goes_while_it_is_walked()
{
    TestDir dir;
    for (int i = 0; i < 20; ++i) {
        dir.createFile(u"d/%1/sub/file"_s.arg(i, 2, 10, QChar(u'0')), "x");
    }
    const Walked walked = walk(dir.at(u"d"_s), [&](const Walked& now) {
        if (now.directories == 5) {
            QDir(dir.filePath(u"d"_s)).removeRecursively();
        }
    });
    QVERIFY(walked.files <= 2);
    QVERIFY(walked.directories >= 20); // those that were listed are shown, empty
}

void TestHostile::huge_file_stops_at_once()
{
    TestDir dir;
    const QString path = dir.createFile(u"huge"_s);
    if (!QFile::resize(path, huge_size)) {
        QSKIP("no sparse files of 1 TiB here");
    }
    WindowFixture fixture;
    for (MyTreeWidget* pane : {fixture.first, fixture.second}) {
        pane->changeModel(dir.at());
        pane->HashAll();
    }
    QTRY_VERIFY(fixture.first->progress->isVisibleTo(fixture.window.get()));
    QSignalSpy first_over(fixture.first, &MyTreeWidget::alldone);
    QSignalSpy second_over(fixture.second, &MyTreeWidget::alldone);
    fixture.first->stop_button->click();
    fixture.second->stop_button->click();
    QVERIFY(fixture.wait_idle());
    QCOMPARE(first_over.count() + second_over.count(), 2);
    QCOMPARE(checksum_at(*fixture.first, u"huge"_s), QString());
}

// Between two looks at it a directory may go and come back.
void TestHostile::vanished_directory_is_not_the_root()
{
    TestDir dir;
    dir.createFile(u"d/file"_s, "x");
    const QString path = dir.at(u"d"_s);
    std::atomic_bool over = false;
    std::thread juggler([&, from = native(path), to = native(dir.at(u"e"_s))] {
        while (!over) {
            std::rename(from.constData(), to.constData());
            std::rename(to.constData(), from.constData());
        }
    });
    QStringList strange;
    for (int i = 0; i < 3000; ++i) {
        for (const engine::Entry& entry : engine::list_directory(path, engine::held_entries)) {
            if (!entry.path.startsWith(dir.at())) {
                strange.append(entry.path);
            }
        }
    }
    over = true;
    juggler.join();
    QCOMPARE(strange, QStringList());
}

void TestHostile::full_file_system_leaves_nothing_behind()
{
    TestDir dir;
    const QString path = dir.createFile(u"d/d.md5"_s, "what was there");
    const QString text(10'000'000, u'x');
    const QString name = dir.at(u"d/d.md5"_s);
    const int code = in_child([&] {
        // A small file system of its own where that is permitted, else a limit with the same
        // effect.
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {1'000'000, 1'000'000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        return engine::write_checksum_file(name, text, engine::Replace::Yes) ? 1 : 0;
    });
    QCOMPARE(code, 0);
    QCOMPARE(dir.read(u"d/d.md5"_s), QByteArray("what was there"));
    QCOMPARE(QDir(dir.at(u"d"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"d.md5"_s});

    const QByteArray mount_point = native(dir.createDir(u"small"_s));
    if (::mount("tmpfs", mount_point.constData(), "tmpfs", 0, "size=64k") != 0) {
        return; // not permitted
    }
    const QString target = dir.at(u"small/d.md5"_s);
    const bool written = engine::write_checksum_file(target, text, engine::Replace::No);
    const QStringList left =
        QDir(dir.at(u"small"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    ::umount(mount_point.constData());
    QVERIFY(!written);
    QCOMPARE(left, QStringList());
}

void TestHostile::forbidden_directory_is_reported()
{
    TestDir dir;
    dir.createFile(u"d/file"_s, "x");
    const QString path = dir.at(u"d"_s);
    // Nobody may create anything there, root neither.
    if (::geteuid() == 0) {
        if (::mount(native(path).constData(), native(path).constData(), nullptr, MS_BIND,
                    nullptr) != 0 ||
            ::mount(nullptr, native(path).constData(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY,
                    nullptr) != 0) {
            QSKIP("to root nothing is forbidden here");
        }
    } else {
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
    }
    {
        WindowFixture fixture;
        fixture.first->changeModel(path);
        ModalDriver<QMessageBox> box([](const QMessageBox&) {});
        fixture.first->act_md5_dir_file->trigger();
        QTRY_VERIFY(box.met());
        QVERIFY(fixture.wait_idle());
    }
    QCOMPARE(QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"file"_s});
    ::umount2(native(path).constData(), MNT_DETACH);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void TestHostile::pipe_in_place_of_a_checksum_file()
{
    TestDir dir;
    const QString path = dir.createFile(u"list.md5"_s, "nothing");
    WindowFixture fixture;
    fixture.first->changeModel(dir.at());
    QVERIFY(QFile::remove(path));
    QVERIFY(::mkfifo(native(path).constData(), 0600) == 0);
    ModalDriver<QMessageBox> box([](const QMessageBox& shown) {
        QCOMPARE(shown.windowTitle(), u"Impossible d'ouvrir le fichier"_s);
    });
    // A window that waits for a writer would wait for ever: one that comes late lets it go on, and
    // the test fail.
    std::thread writer([name = native(path)] {
        std::this_thread::sleep_for(std::chrono::seconds(3));
        const int fd = ::open(name.constData(), O_WRONLY | O_NONBLOCK);
        ::close(fd);
    });
    emit fixture.first->itemActivated(find_row(*fixture.first, u"list.md5"_s), 0);
    writer.join();
    QVERIFY(box.met());
}

// A checksum file chooses the algorithm, which nobody else may do while it is verified.
void TestHostile::unusable_checksum_file_leaves_the_controls()
{
    TestDir dir;
    dir.createFile(u"empty.sha1"_s, "# nothing\n");
    dir.createDir(u"directory.md5"_s);
    WindowFixture fixture;
    for (const QString& name : {u"empty.sha1"_s, u"directory.md5"_s}) {
        fixture.first->changeModel(dir.at());
        ModalDriver<QMessageBox> box([](const QMessageBox&) {});
        emit fixture.first->itemActivated(find_row(*fixture.first, name), 0);
        QVERIFY(box.met());
        QVERIFY(!fixture.first->job_running());
        QVERIFY2(fixture.radio(u"MD5"_s)->isEnabled(), qPrintable(name));
        QVERIFY(fixture.radio(u"SHA1"_s)->isEnabled());
    }
}

void TestHostile::checksum_files_are_not_written_into_the_root_data()
{
    QTest::addColumn<QAction * MyTreeWidget::*>("action");
    QTest::addColumn<bool>("gone_before");
    QTest::newRow("beside each file") << &MyTreeWidget::act_md5_file << false;
    QTest::newRow("of the directory") << &MyTreeWidget::act_md5_dir_file << true;
}

void TestHostile::checksum_files_are_not_written_into_the_root()
{
    QFETCH(QAction * MyTreeWidget::*, action);
    QFETCH(bool, gone_before);
    const auto names_in_root = [] { return QDir::root().entryList(QDir::Files | QDir::Hidden); };
    const QStringList before = names_in_root();
    TestDir dir;
    dir.createFile(u"d/hostile-probe.txt"_s, "x");
    WindowFixture fixture;
    fixture.first->changeModel(dir.at(u"d"_s));
    fixture.first->selectAll();
    const auto remove = [&] { QDir(dir.filePath(u"d"_s)).removeRecursively(); };
    if (gone_before) {
        remove();
    }
    // The hashing is over, the file not yet written.
    connect(fixture.first, &MyTreeWidget::alldone, this, remove);
    ModalDriver<QMessageBox> box([](const QMessageBox&) {});
    (fixture.first->*action)->trigger();
    QVERIFY(fixture.wait_idle());
    QTRY_VERIFY(box.met());
    QStringList written = names_in_root();
    written.removeIf([&](const QString& name) { return before.contains(name); });
    for (const QString& name : std::as_const(written)) {
        QFile::remove(u"/"_s + name);
    }
    QCOMPARE(written, QStringList());
}

void TestHostile::checksum_file_asked_for_during_another_job_data()
{
    QTest::addColumn<QAction * MyTreeWidget::*>("action");
    QTest::addColumn<bool>("fits");
    QTest::newRow("same kind") << &MyTreeWidget::act_md5_dir_file << true;
    QTest::newRow("other kind") << &MyTreeWidget::act_sha1_dir_file << false;
    QTest::newRow("other kind, beside each file") << &MyTreeWidget::act_sha1_file << false;
}

// The job goes on by its own algorithm; under the other one's name its digests would say that good
// files are damaged.
void TestHostile::checksum_file_asked_for_during_another_job()
{
    QFETCH(QAction * MyTreeWidget::*, action);
    QFETCH(bool, fits);
    TestDir dir;
    const QString last = dir.createFile(u"d/last"_s);
    if (!QFile::resize(last, huge_size)) {
        QSKIP("no sparse files of 1 TiB here");
    }
    WindowFixture fixture;
    fixture.first->changeModel(dir.at(u"d"_s));
    fixture.first->HashAll();
    QTRY_VERIFY(fixture.first->progress->isVisibleTo(fixture.window.get()));
    fixture.first->selectAll();
    (fixture.first->*action)->trigger();
    QVERIFY(QFile::resize(last, 0)); // the job comes to its end by itself
    QVERIFY(fixture.wait_idle());
    QByteArray written;
    for (const QString& name : QDir(dir.at(u"d"_s)).entryList({u"*.md5"_s, u"*.sha1"_s})) {
        written += dir.read(u"d/"_s + name);
    }
    QCOMPARE(written.contains("  last\n"), fits);
}

// Asked for as the last rows of a listing arrive, so that another job has begun by the time in
// which the end of the refused one is told.
void TestHostile::refused_job_does_not_end_the_next()
{
    TestDir dir;
    if (!QFile::resize(dir.createFile(u"d/huge"_s), huge_size)) {
        QSKIP("no sparse files of 1 TiB here");
    }
    WindowFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    connect(pane.model(), &QAbstractItemModel::rowsInserted, &pane, [&pane] { pane.HashThis(); });
    QSignalSpy reading(&pane, &MyTreeWidget::processing);
    pane.open_and_hash_all(dir.at(u"d"_s));
    QTRY_VERIFY(!reading.isEmpty());
    QVERIFY(pane.job_running());
    QVERIFY(!pane.drive_combo->isEnabled());
    QVERIFY(!pane.acceptDrops());
    pane.stop_button->click();
    QVERIFY(fixture.wait_idle());
    QVERIFY(pane.drive_combo->isEnabled());
}

void TestHostile::dropped_rows_may_die_during_a_listing()
{
    TestDir dir;
    const QString dropped = dir.createFile(u"n1"_s, "x");
    dir.createFile(u"large/seed"_s, "x");
    // Enough for the listing to take longer than a window may be silent.
    for (int i = 0; i < 20'000; ++i) {
        ::link(native(dir.at(u"large/seed"_s)).constData(),
               native(dir.at(u"large/n%1"_s.arg(i))).constData());
    }
    WindowFixture fixture;
    fixture.second->changeModel(dir.at(u"large"_s));
    bool navigated = false;
    QTimer::singleShot(0, fixture.first, [&] {
        navigated = true;
        fixture.first->changeModel(dir.at());
    });
    drop_on(*fixture.first, {dropped});
    QVERIFY2(navigated, "the listing was over too soon");
    QVERIFY(fixture.wait_idle());
    QCOMPARE(fixture.first->current_dir().canonicalPath(), dir.at());
}

// Both panes show dropped files and lose their checksums in the middle of their jobs.
void TestHostile::reset_during_a_job_makes_nothing_green()
{
    TestDir dir;
    WindowFixture fixture;
    QHash<MyTreeWidget*, QString> last_files;
    for (MyTreeWidget* pane : {fixture.first, fixture.second}) {
        const QString side = pane == fixture.first ? u"a"_s : u"b"_s;
        dir.createFile(side + u"/file"_s, side.toUtf8());
        last_files[pane] = dir.createFile(side + u"/last"_s);
        drop_on(*pane, {dir.at(side + u"/file"_s), last_files[pane]});
        QVERIFY(fixture.wait_idle());
        QVERIFY(pane->in_custom_mode());
    }
    for (MyTreeWidget* pane : {fixture.first, fixture.second}) {
        if (!QFile::resize(last_files[pane], huge_size)) {
            QSKIP("no sparse files of 1 TiB here");
        }
        pane->reset_marks();
        pane->HashAll();
    }
    for (MyTreeWidget* pane : {fixture.first, fixture.second}) {
        QTRY_VERIFY(!checksum_at(*pane, u"file"_s).isEmpty());
        pane->reset_button->click();
    }
    fixture.clear_message();
    for (const QString& path : std::as_const(last_files)) {
        QVERIFY(QFile::resize(path, 0)); // the jobs come to their ends by themselves
    }
    QVERIFY(fixture.wait_idle());
    QTRY_COMPARE(mark_at(*fixture.first, u"file"_s), u"white"_s);
    QCOMPARE(mark_at(*fixture.second, u"file"_s), u"white"_s);
}

QTEST_MAIN(TestHostile)
#include "test_hostile.moc"
