// File systems at their worst, as far as no line of a scenario can say it: nothing may hang, crash,
// or be written where it does not belong.

#include "engine/hash_job.h"
#include "engine/listing.h"
#include "tests/support/scene.h"

#include <QProcess>
#include <QTest>

#include <thread>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Runs a job on one path; `look` sees each message in the job itself, at the moment of it.
void run_job(engine::HashStep::Kind kind, const QString& path,
             const std::function<void(const engine::JobMessage&)>& look)
{
    engine::HashPlan plan;
    plan.steps = {{kind, 0, path}};
    plan.next_row = 1;
    engine::run_hash_job(plan, {}, [&](engine::JobMessage&& message) { look(message); });
}

} // namespace

class TestHostile : public QObject
{
    Q_OBJECT

  private slots:
    void odd_things_data();
    void odd_things();
    void two_thousand_levels();
    void file_changes_while_it_is_read();
    void directory_goes_while_it_is_walked();
    void vanished_directory_is_not_the_root();
    void checksum_files_are_not_written_into_the_root();
};

// What comes into the place of l/file after it was listed, and what a job then says of it.
void TestHostile::odd_things_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("seen");
    const QString unreadable = u".. file=unreadable"_s;
    QTest::newRow("pipe") << u"rm file; mkfifo file"_s << unreadable;
    QTest::newRow("link to a pipe") << u"rm file; mkfifo ../p; ln -s ../p file"_s << unreadable;
    QTest::newRow("directory") << u"rm file; mkdir file"_s << unreadable;
    QTest::newRow("link to itself") << u"rm file; ln -s file file"_s << unreadable;
    QTest::newRow("terminal") << u"ln -sf /dev/tty file"_s << unreadable;
    QTest::newRow("endless device") << u"ln -sf /dev/zero file"_s << unreadable;
    // It says that it is empty, and is not.
    QTest::newRow("of the kernel") << u"ln -sf /proc/sys/kernel/ostype file"_s << u".. file=md5"_s;
    QTest::newRow("a name that is no text")
        << u"touch \"$(printf '\\\\377\\\\376')\""_s << u".. file=md5"_s;
}

void TestHostile::odd_things()
{
    QFETCH(QString, command);
    QFETCH(QString, seen);
    Scene scene;
    scene.run(u"put l/file"_s);
    scene.run(u"call L Reset"_s);
    QProcess::execute(u"sh"_s,
                      {u"-c"_s, u"cd \"$1\"/l; "_s + command, u"sh"_s, scene.working_dir.at()});
    scene.run(u"call L HashAll"_s);
    QVERIFY2(scene.run(u"see L"_s).startsWith(seen), qPrintable(scene.run(u"see L"_s)));
    // However else it is met.
    for (const QString& line : {u"open L l"_s, u"drop R l/file"_s, u"args l/file"_s}) {
        scene.run(line);
        QCOMPARE(scene.violation(), QString());
    }
}

void TestHostile::two_thousand_levels()
{
    Scene scene;
    int made = 0;
    QDir::setCurrent(scene.working_dir.at(u"l"_s));
    while (made < 2000 && ::mkdir("d", 0700) == 0 && ::chdir("d") == 0) {
        ++made; // by relative steps: the whole path is too long for most calls
    }
    QDir::setCurrent(scene.working_dir.at());
    QCOMPARE(made, 2000);
    scene.run(u"call L Reset"_s);
    scene.run(u"select L d"_s);
    scene.run(u"call L HashThis"_s);
    QVERIFY(scene.run(u"see L"_s).count(u"d/"_s) > 1000); // as deep as paths can be written
    QCOMPARE(scene.violation(), QString());
    scene.run(u"open L r"_s);
    QCOMPARE(QProcess::execute(u"rm"_s, {u"-rf"_s, scene.working_dir.at(u"l/d"_s)}), 0);
}

void TestHostile::file_changes_while_it_is_read()
{
    TestDir dir;
    for (const int size : {0, 0x40000, 8'000'000}) {
        const QString path = dir.createFile(u"file"_s, QByteArray(4'000'000, '\0'));
        QString digest;
        run_job(engine::HashStep::Kind::File, path, [&](const engine::JobMessage& message) {
            if (std::holds_alternative<engine::FileStarted>(message)) {
                QFile::resize(path, size);
            } else if (const auto* ended = std::get_if<engine::FileEnded>(&message)) {
                digest = ended->result.digest;
            }
        });
        QCOMPARE(digest, reference_digest(QByteArray(size, '\0')));
    }
}

void TestHostile::directory_goes_while_it_is_walked()
{
    TestDir dir;
    for (int i = 10; i < 30; ++i) {
        dir.createFile(u"d/%1/sub/file"_s.arg(i), "x");
    }
    int directories = 0;
    int files = 0;
    run_job(engine::HashStep::Kind::Walk, dir.at(u"d"_s), [&](const engine::JobMessage& message) {
        directories += std::holds_alternative<engine::DirectoryFound>(message) ? 1 : 0;
        files += std::holds_alternative<engine::FileFound>(message) ? 1 : 0;
        if (directories == 5) {
            QDir(dir.at(u"d"_s)).removeRecursively();
        }
    });
    QVERIFY(files <= 2);
    QVERIFY(directories >= 20); // those that were listed are shown, empty
}

// Between two looks at it a directory may go and come back.
void TestHostile::vanished_directory_is_not_the_root()
{
    TestDir dir;
    const QString path = QFileInfo(dir.createFile(u"d/file"_s, "x")).path();
    std::atomic_bool over = false;
    std::thread juggler([&] {
        while (!over) {
            QFile::rename(path, path + u'2');
            QFile::rename(path + u'2', path);
        }
    });
    QStringList strange;
    for (int i = 0; i < 3000; ++i) {
        for (const engine::Entry& entry : engine::list_directory(path, engine::held_entries)) {
            strange << (entry.path.startsWith(dir.at()) ? QString() : entry.path);
        }
    }
    over = true;
    juggler.join();
    strange.removeAll(QString());
    QCOMPARE(strange, QStringList());
}

// The hashing is over and the file not yet written when its directory goes.
void TestHostile::checksum_files_are_not_written_into_the_root()
{
    const auto names_in_root = [] { return QDir::root().entryList(QDir::Files | QDir::Hidden); };
    const QStringList before = names_in_root();
    Scene scene;
    scene.run(u"put l/d/hostile-probe"_s);
    connect(scene.first, &MyTreeWidget::alldone, this, [&] { scene.run(u"rm l/d&"_s); });
    for (const char* act : {"Créer fichier MD5", "Créer fichier SHA1 du répertoire"}) {
        scene.run(u"put l/d/hostile-probe"_s);
        scene.run(u"open L l/d"_s);
        scene.first->selectAll();
        QVERIFY(scene.run(u"do L \"%1\""_s.arg(QString::fromUtf8(act))).contains(u'[')); // says so
        QCOMPARE(names_in_root(), before);
    }
}

QTEST_MAIN(TestHostile)
#include "test_hostile.moc"
