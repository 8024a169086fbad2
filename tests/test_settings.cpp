// The settings file: what is read and written, where it lies, and what it survives.

#include "app/screen_fit.h"
#include "app/settings_file.h"
#include "tests/pane_fixture.h"

#include <QApplication>
#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString file_name = u"Tavrel.ini"_s;

using Values = QMap<QString, QVariant>;

Values values_of(const QString& path)
{
    const QSettings settings(path, QSettings::IniFormat);
    Values values;
    for (const QString& key : settings.allKeys()) {
        values.insert(key, settings.value(key));
    }
    return values;
}

void write_values(const QString& path, const Values& values)
{
    QSettings settings(path, QSettings::IniFormat);
    for (const auto& [key, value] : values.asKeyValueRange()) {
        settings.setValue(key, value);
    }
}

QSplitter& splitter_of(const MainFen& window)
{
    return *window.findChild<QSplitter*>();
}

/// A directory in which this user cannot create a file; empty where there is none.
QString locked_directory(TestDir& dir)
{
    if (!permissions_hold()) {
        return QFileInfo(u"/proc"_s).isDir() ? u"/proc"_s : QString();
    }
    const QString locked = dir.createDir(u"locked"_s);
    QFile::setPermissions(locked, QFile::ReadOwner | QFile::ExeOwner);
    return locked;
}

/// The program itself, running in a directory of the test.
class Program
{
  public:
    explicit Program(const QString& directory, const QStringList& arguments = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        // By its painting the program tells that its window stands and its event loop runs.
        environment.insert(u"QT_LOGGING_RULES"_s, u"qt.widgets.painting=true"_s);
        if (QSysInfo::productType() == "windows"_L1) {
            // There it is the windows that are asked to end, which have to be the system's own.
            environment.remove(u"QT_QPA_PLATFORM"_s);
        }
        process_.setProcessEnvironment(environment);
        process_.setProcessChannelMode(QProcess::MergedChannels);
        process_.setWorkingDirectory(directory);
        process_.start(QString::fromLocal8Bit(TAVREL_PROGRAM), arguments);
    }
    ~Program() { kill(); }
    Q_DISABLE_COPY_MOVE(Program)

    bool wait_shown()
    {
        return QTest::qWaitFor(
            [this] {
                output_ += process_.readAll();
                return output_.contains("qt.widgets.painting: Flushing");
            },
            60000);
    }

    /// Asks for the end as the system does at a logout; answers whether it came in good order.
    bool quit()
    {
        process_.terminate();
        return process_.waitForFinished(60000) && process_.exitStatus() == QProcess::NormalExit &&
               process_.exitCode() == 0;
    }
    void kill()
    {
        process_.kill();
        process_.waitForFinished(60000);
    }

  private:
    QProcess process_;
    QByteArray output_;
};

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

  private slots:
    void first_start_has_the_defaults();
    void every_key_goes_round();
    void changes_in_the_window_are_saved();
    void oddities_data();
    void oddities();
    void directories_data();
    void directories();
    void damaged_file_gives_the_defaults_data();
    void damaged_file_gives_the_defaults();
    void windows_are_brought_into_sight_data();
    void windows_are_brought_into_sight();
    void locked_directory_is_made_up_for();
    void program_writes_only_at_its_end();
    void program_keeps_a_file_per_directory();
    void program_with_arguments_keeps_the_first_directory();
};

void TestSettings::first_start_has_the_defaults()
{
    const WindowFixture fixture;
    QCOMPARE(fixture.window->size(), QSize(800, 600));
    QCOMPARE(fixture.window->pos(), QPoint(100, 200));
    QVERIFY(fixture.radio(u"MD5"_s)->isChecked());
    QCOMPARE(splitter_of(*fixture.window).orientation(), Qt::Horizontal);
    for (const MyTreeWidget* pane : {fixture.first, fixture.second}) {
        QVERIFY(!pane->ccname && !pane->ccsize && !pane->ccpath);
        QVERIFY(!pane->upper && !pane->rem_dir && !pane->rem_view);
        QCOMPARE(pane->exclusions, QStringList());
        QCOMPARE(pane->current_dir().path(), QDir::rootPath());
    }
    QVERIFY(!QFile::exists(file_name));
}

void TestSettings::every_key_goes_round()
{
    WindowFixture fixture;
    TestDir dir;
    dir.createDir(u"one, two; three = é"_s);
    QSplitter sizes(Qt::Vertical);
    sizes.addWidget(new QWidget);
    sizes.addWidget(new QWidget);
    sizes.setSizes({500, 600});
    const Values values = {
        {u"MainWindow/size"_s, QSize(640, 480)},
        {u"MainWindow/pos"_s, QPoint(20, 30)},
        {u"MainWindow/lang"_s, u"en_GB"_s},
        {u"MainWindow/splitterSizes"_s, sizes.saveState()},
        {u"MainWindow/views"_s, u"2"_s},
        {u"App/alg"_s, u"SHA1"_s},
        {u"App/tree1"_s, dir.at(u"one, two; three = é"_s)},
        {u"App/tree2"_s, dir.at()},
        {u"App/ccname"_s, u"true"_s},
        {u"App/ccsize"_s, u"true"_s},
        {u"App/ccpath"_s, u"true"_s},
        {u"App/upper"_s, u"true"_s},
        {u"App/rem_dir"_s, u"true"_s},
        {u"App/rem_view"_s, u"true"_s},
        {u"App/exclu"_s, u"*.jpg;*.tmp"_s},
    };
    write_values(file_name, values);
    fixture.rebuild();
    QCOMPARE(fixture.window->size(), QSize(640, 480));
    QCOMPARE(fixture.window->pos(), QPoint(20, 30));
    QVERIFY(fixture.radio(u"SHA1"_s)->isChecked());
    QCOMPARE(splitter_of(*fixture.window).orientation(), Qt::Vertical);
    QCOMPARE(fixture.first->current_dir().path(), values[u"App/tree1"_s].toString());
    QCOMPARE(fixture.second->current_dir().path(), values[u"App/tree2"_s].toString());
    for (const MyTreeWidget* pane : {fixture.first, fixture.second}) {
        QVERIFY(pane->ccname && pane->ccsize && pane->ccpath);
        QVERIFY(pane->upper && pane->rem_dir && pane->rem_view);
        QCOMPARE(pane->exclusions, (QStringList{u"jpg"_s, u"tmp"_s}));
        QCOMPARE(pane->algorithm(), QCryptographicHash::Sha1);
        QCOMPARE(pane->headerItem()->text(ColHash), u"SHA1"_s);
    }

    QVERIFY(QFile::remove(file_name));
    fixture.window->writeSettings();
    const Values written = values_of(file_name);
    QCOMPARE(written.keys(), values.keys());
    for (const auto& [key, value] : values.asKeyValueRange()) {
        QCOMPARE(written[key].toString(), value.toString());
        QCOMPARE(written[key].toSize(), value.toSize());
        QCOMPARE(written[key].toPoint(), value.toPoint());
    }
}

void TestSettings::changes_in_the_window_are_saved()
{
    WindowFixture fixture;
    TestDir dir;
    dir.createDir(u"a"_s);
    dir.createDir(u"b"_s);
    fixture.window->resize(500, 400);
    fixture.window->move(7, 9);
    fixture.radio(u"SHA1"_s)->setChecked(true);
    fixture.action(u"Vues Verticales."_s)->trigger();
    splitter_of(*fixture.window).setSizes({500, 600});
    const QByteArray sizes = splitter_of(*fixture.window).saveState();
    fixture.first->changeModel(dir.at(u"a"_s));
    fixture.second->changeModel(dir.at(u"b"_s));
    // What is written for both panes is the first one's.
    fixture.first->setopt(true, false, true, true, true, false);
    fixture.first->set_exclus(u"a;*.b"_s);
    fixture.second->setopt(false, true, false, false, false, true);
    fixture.second->set_exclus(u"c"_s);
    fixture.window->writeSettings();

    fixture.rebuild();
    QCOMPARE(fixture.window->size(), QSize(500, 400));
    QCOMPARE(fixture.window->pos(), QPoint(7, 9));
    QVERIFY(fixture.radio(u"SHA1"_s)->isChecked());
    QCOMPARE(splitter_of(*fixture.window).saveState(), sizes);
    QCOMPARE(fixture.first->current_dir().path(), dir.at(u"a"_s));
    QCOMPARE(fixture.second->current_dir().path(), dir.at(u"b"_s));
    for (const MyTreeWidget* pane : {fixture.first, fixture.second}) {
        QVERIFY(pane->ccname && !pane->ccsize && pane->ccpath);
        QVERIFY(pane->rem_dir && pane->rem_view && !pane->upper);
        QCOMPARE(pane->exclusions, (QStringList{u"a"_s, u"b"_s}));
    }
}

void TestSettings::oddities_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("written");
    const auto row = [](const char* title, const QByteArray& content, const QString& key,
                        const QString& written) {
        QTest::newRow(title) << content << key << written;
    };
    const QString views = u"MainWindow/views"_s;
    row("views kept, vertical", "[MainWindow]\nviews=2\n[App]\nrem_view=true\n", views, u"2"_s);
    row("views kept, horizontal", "[MainWindow]\nviews=1\n[App]\nrem_view=true\n", views, u"1"_s);
    row("views kept, none", "[App]\nrem_view=true\n", views, u"2"_s);
    row("views kept, no number", "[MainWindow]\nviews=x\n[App]\nrem_view=true\n", views, u"2"_s);
    row("views not kept", "[MainWindow]\nviews=2\n[App]\nrem_view=false\n", views, u"1"_s);
    row("algorithm in small letters", "[App]\nalg=sha1\n", u"App/alg"_s, u"MD5"_s);
    row("another algorithm", "[App]\nalg=SHA256\n", u"App/alg"_s, u"MD5"_s);
    row("language of a country", "[MainWindow]\nlang=en_GB\n", u"MainWindow/lang"_s, u"en_GB"_s);
    row("exclusions of either form", "[App]\nexclu=\"*.jpg;tmp;*.dat\"\n", u"App/exclu"_s,
        u"*.jpg;*.tmp;*.dat"_s);
    row("no exclusions", "[App]\nexclu=\";;\"\n", u"App/exclu"_s, QString());
    row("numbers for booleans", "[App]\nccsize=1\n", u"App/ccsize"_s, u"true"_s);
}

void TestSettings::oddities()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, key);
    WindowFixture fixture;
    fixture.working_dir.createFile(file_name, content);
    fixture.rebuild();
    fixture.window->writeSettings();
    QTEST(values_of(file_name)[key].toString(), "written");
    QCOMPARE(fixture.second->get_exclus(), fixture.first->get_exclus());
    const bool vertical = splitter_of(*fixture.window).orientation() == Qt::Vertical;
    QCOMPARE(fixture.action(u"Vues Horizontales."_s)->isEnabled(), vertical);
    QCOMPARE(fixture.action(u"Vues Verticales."_s)->isEnabled(), !vertical);
}

void TestSettings::directories_data()
{
    QTest::addColumn<bool>("rem_dir");
    QTest::addColumn<QString>("saved"); // below the directory of the test
    QTest::addColumn<bool>("opened");
    QTest::newRow("kept") << true << u"sub"_s << true;
    QTest::newRow("kept, gone") << true << u"gone"_s << false;
    QTest::newRow("only the volume") << false << u"sub"_s << false;
}

void TestSettings::directories()
{
    QFETCH(bool, rem_dir);
    QFETCH(QString, saved);
    QFETCH(bool, opened);
    WindowFixture fixture;
    TestDir dir;
    dir.createDir(u"sub"_s);
    const QString path = dir.at(saved);
    write_values(file_name,
                 {{u"App/tree1"_s, path}, {u"App/tree2"_s, path}, {u"App/rem_dir"_s, rem_dir}});
    fixture.rebuild();
    const QString expected = opened ? path : QStorageInfo(dir.path()).rootPath();
    for (const MyTreeWidget* pane : {fixture.first, fixture.second}) {
        QCOMPARE(pane->current_dir().path(), expected);
    }
    fixture.window->writeSettings();
    QCOMPARE(values_of(file_name)[u"App/tree1"_s].toString(), expected);
}

void TestSettings::damaged_file_gives_the_defaults_data()
{
    QTest::addColumn<QByteArray>("content");
    QRandomGenerator random(7);
    for (int i = 0; i < 5; ++i) {
        QByteArray junk(0x4000, Qt::Uninitialized);
        random.fillRange(reinterpret_cast<quint32*>(junk.data()), junk.size() / 4);
        QTest::addRow("junk %d", i) << junk;
        QTest::addRow("junk %d below a group", i) << "[MainWindow]\nsize=" + junk;
    }
    QTest::newRow("cut off") << QByteArray("[MainWindow]\nsize=@Size(64");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("wrong types") << QByteArray(
        "[MainWindow]\nsize=large\npos=left\nviews=@Size(1 1)\n"
        "splitterSizes=@Point(1 1)\nlang=@Size(1 1)\n"
        "[App]\nalg=@Point(1 1)\nexclu=a,b\ntree1=a,b\n"
        "tree2=@ByteArray(\\0)\nrem_view=true\n");
    QTest::newRow("exchanged types")
        << QByteArray("[MainWindow]\nsize=@Point(4 4)\npos=@Size(4 4)\n");
    QTest::newRow("broken values")
        << QByteArray("[MainWindow]\nsize=@Size(a b)\npos=@Invalid()\n"
                      "splitterSizes=@Variant(\\0\\0\\0\\x7f\\xff\\xff)\n[App]\nrem_view=true\n");
    QTest::newRow("negative size") << QByteArray("[MainWindow]\nsize=@Size(-640 -480)\n");
    QTest::newRow("huge size") << QByteArray("[MainWindow]\nsize=@Size(2000000000 2000000000)\n");
    QTest::newRow("endless splitter")
        << QByteArray("[MainWindow]\nsplitterSizes=\"@ByteArray(\\0\\0\\0\\xff\\0\\0\\0\\x1"
                      "\\x7f\\xff\\xff\\xff)\"\n[App]\nrem_view=true\n");
}

void TestSettings::damaged_file_gives_the_defaults()
{
    QFETCH(QByteArray, content);
    WindowFixture fixture;
    fixture.working_dir.createFile(file_name, content);
    fixture.rebuild();
    QCOMPARE(fixture.window->size(), QSize(800, 600));
    QCOMPARE(fixture.window->pos(), QPoint(100, 200));
    QVERIFY(fixture.radio(u"MD5"_s)->isChecked());
    QCOMPARE(fixture.first->exclusions, QStringList());
    QCOMPARE(fixture.first->current_dir().path(), QDir::rootPath());
    fixture.window->resize(640, 480);
    fixture.window->writeSettings();
    fixture.rebuild();
    QCOMPARE(fixture.window->size(), QSize(640, 480));
}

void TestSettings::windows_are_brought_into_sight_data()
{
    QTest::addColumn<QPoint>("saved");
    QTest::addColumn<QPoint>("shown");
    // A window of 800 by 600 on a screen of 1920 by 1080 with another one to its left.
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    QTest::newRow("in sight") << QPoint(100, 200) << QPoint(100, 200);
    QTest::newRow("on the second screen") << QPoint(-1200, 300) << QPoint(-1200, 300);
    QTest::newRow("across both screens") << QPoint(-400, 300) << QPoint(-400, 300);
    QTest::newRow("a grip is left") << QPoint(1856, 1000) << QPoint(1856, 1000);
    QTest::newRow("too little is left") << QPoint(1857, 200) << QPoint(1120, 200);
    QTest::newRow("below") << QPoint(100, 1060) << QPoint(100, 480);
    QTest::newRow("title bar above") << QPoint(100, -10) << QPoint(100, 0);
    QTest::newRow("screen gone") << QPoint(-5000, -5000) << QPoint(0, 0);
    QTest::newRow("as far as numbers go") << QPoint(most, most) << QPoint(1120, 480);
    QTest::newRow("and the other way") << QPoint(least, least) << QPoint(0, 0);
}

void TestSettings::windows_are_brought_into_sight()
{
    QFETCH(QPoint, saved);
    const QList<QRect> screens = {QRect(0, 0, 1920, 1080), QRect(-1280, 0, 1280, 1024)};
    QTEST(position_in_sight(saved, QSize(800, 600), screens), "shown");
    QCOMPARE(position_in_sight(saved, QSize(800, 600), {}), saved);

    WindowFixture fixture;
    write_values(file_name, {{u"MainWindow/pos"_s, saved}});
    fixture.rebuild();
    const QRect screen = fixture.window->screen()->availableGeometry();
    QVERIFY(screen.intersects(QRect(fixture.window->pos(), QSize(800, 24))));
}

void TestSettings::locked_directory_is_made_up_for()
{
    WindowFixture fixture;
    TestDir dir;
    const QString locked = locked_directory(dir);
    if (locked.isEmpty()) {
        QSKIP("this user can write everywhere");
    }
    const QByteArray old_folder = qgetenv("XDG_CONFIG_HOME");
    const auto restored = qScopeGuard([&] {
        old_folder.isNull() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", old_folder);
    });
    qputenv("XDG_CONFIG_HOME", dir.at(u"config"_s).toLocal8Bit());
    const QString substitute = dir.at(u"config/Brennick/Tavrel.ini"_s);
    if (!substitute.startsWith(
            QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))) {
        QSKIP("the configuration folder cannot be moved here");
    }
    QCOMPARE(settings_path(), file_name);
    QVERIFY(QDir::setCurrent(locked));
    QCOMPARE(settings_path(), substitute);
    fixture.rebuild();
    fixture.window->resize(500, 400);
    fixture.window->writeSettings();
    QCOMPARE(values_of(substitute)[u"MainWindow/size"_s].toSize(), QSize(500, 400));
    fixture.rebuild();
    QCOMPARE(fixture.window->size(), QSize(500, 400));

    // A file that is there counts, even where it cannot be written.
    if (permissions_hold()) {
        QFile::setPermissions(locked, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        write_values(file_name, {{u"MainWindow/size"_s, QSize(640, 480)}});
        QFile::setPermissions(file_name, QFile::ReadOwner);
        QFile::setPermissions(locked, QFile::ReadOwner | QFile::ExeOwner);
        fixture.rebuild();
        QCOMPARE(fixture.window->size(), QSize(640, 480));
        fixture.window->writeSettings();
        QCOMPARE(values_of(substitute)[u"MainWindow/size"_s].toSize(), QSize(500, 400));
        QCOMPARE(values_of(file_name)[u"MainWindow/size"_s].toSize(), QSize(640, 480));
    }
}

void TestSettings::program_writes_only_at_its_end()
{
    TestDir dir;
    Program killed(dir.path());
    QVERIFY(killed.wait_shown());
    killed.kill();
    QVERIFY(!QFile::exists(dir.filePath(file_name)));

    write_values(dir.filePath(file_name), {{u"MainWindow/size"_s, QSize(640, 480)},
                                           {u"MainWindow/lang"_s, u"en"_s},
                                           {u"App/alg"_s, u"SHA1"_s}});
    const QByteArray before = dir.read(file_name);
    Program again(dir.path());
    QVERIFY(again.wait_shown());
    QCOMPARE(dir.read(file_name), before);
    QVERIFY(again.quit());
    const Values values = values_of(dir.filePath(file_name));
    QCOMPARE(values.size(), 15);
    // The least width that a window can have follows the fonts.
    QCOMPARE(values[u"MainWindow/size"_s].toSize().height(), 480);
    QCOMPARE(values[u"MainWindow/lang"_s].toString(), u"en"_s);
    QCOMPARE(values[u"App/alg"_s].toString(), u"SHA1"_s);
}

void TestSettings::program_keeps_a_file_per_directory()
{
    TestDir first;
    TestDir second;
    write_values(first.filePath(file_name), {{u"App/alg"_s, u"SHA1"_s}});
    Program in_first(first.path());
    Program in_second(second.path());
    QVERIFY(in_first.wait_shown() && in_second.wait_shown());
    QVERIFY(in_first.quit() && in_second.quit());
    QCOMPARE(values_of(first.filePath(file_name))[u"App/alg"_s].toString(), u"SHA1"_s);
    QCOMPARE(values_of(second.filePath(file_name))[u"App/alg"_s].toString(), u"MD5"_s);
}

void TestSettings::program_with_arguments_keeps_the_first_directory()
{
    TestDir dir;
    dir.createDir(u"saved"_s);
    dir.createFile(u"opened/file"_s, "x");
    write_values(dir.filePath(file_name), {{u"App/tree1"_s, dir.at(u"saved"_s)},
                                           {u"App/tree2"_s, dir.at(u"gone"_s)},
                                           {u"App/rem_dir"_s, true}});
    Program program(dir.path(), {dir.at(u"opened"_s)});
    QVERIFY(program.wait_shown());
    QVERIFY(program.quit());
    const Values values = values_of(dir.filePath(file_name));
    QCOMPARE(values[u"App/tree1"_s].toString(), dir.at(u"saved"_s));
    QCOMPARE(values[u"App/tree2"_s].toString(), QStorageInfo(dir.path()).rootPath());
    QCOMPARE(values[u"App/alg"_s].toString(), u"MD5"_s);
}

// The window reads the application's arguments, and those of a test are not meant for it.
int main(int argc, char* argv[])
{
    int only_the_program = 1;
    const QApplication application(only_the_program, argv);
    TestSettings test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "test_settings.moc"
