// The settings file: what is read and written, where it lies, and what it survives.

#include "app/screen_fit.h"
#include "app/settings_file.h"
#include "tests/pane_fixture.h"

#include <QApplication>
#include <QDir>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
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

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

  private slots:
    void every_key_goes_round();
    void oddities_data();
    void oddities();
    void directories_data();
    void directories();
    void damaged_file_gives_the_defaults_data();
    void damaged_file_gives_the_defaults();
    void windows_are_brought_into_sight();
    void locked_directory_is_made_up_for();
};

void TestSettings::every_key_goes_round()
{
    // With every other option on, then with the rest of them.
    for (const bool odd : {true, false}) {
        const QString on = odd ? u"true"_s : u"false"_s;
        const QString off = odd ? u"false"_s : u"true"_s;
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
            {u"App/ccname"_s, on},
            {u"App/ccsize"_s, off},
            {u"App/ccpath"_s, on},
            {u"App/upper"_s, off},
            {u"App/rem_dir"_s, u"true"_s},
            {u"App/rem_view"_s, u"true"_s},
            {u"App/exclu"_s, u"*.jpg;*.tmp"_s},
        };
        write_values(file_name, values);
        fixture.rebuild();
        QCOMPARE(fixture.window->size(), QSize(640, 480));
        QCOMPARE(fixture.window->pos(), QPoint(20, 30));
        QCOMPARE(splitter_of(*fixture.window).orientation(), Qt::Vertical);
        QCOMPARE(fixture.first->current_dir().path(), values[u"App/tree1"_s].toString());
        QCOMPARE(fixture.second->current_dir().path(), values[u"App/tree2"_s].toString());
        for (const MyTreeWidget* pane : {fixture.first, fixture.second}) {
            QVERIFY(pane->ccname == odd && pane->ccsize != odd && pane->ccpath == odd);
            QVERIFY(pane->upper != odd && pane->rem_dir && pane->rem_view);
            QCOMPARE(pane->exclusions, (QStringList{u"jpg"_s, u"tmp"_s}));
            QCOMPARE(pane->algorithm(), QCryptographicHash::Sha1);
            QCOMPARE(pane->headerItem()->text(ColHash), u"SHA1"_s);
        }

        // What is written for both panes is the first one's.
        fixture.second->setopt(!odd, odd, !odd, false, false, odd);
        fixture.second->set_exclus(u"c"_s);
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
    row("views kept, horizontal", "[MainWindow]\nviews=1\n[App]\nrem_view=true\n", views, u"1"_s);
    row("views kept, none", "[App]\nrem_view=true\n", views, u"2"_s);
    row("views kept, no number", "[MainWindow]\nviews=x\n[App]\nrem_view=true\n", views, u"2"_s);
    row("views not kept", "[MainWindow]\nviews=2\n[App]\nrem_view=false\n", views, u"1"_s);
    row("algorithm in small letters", "[App]\nalg=sha1\n", u"App/alg"_s, u"MD5"_s);
    row("another algorithm", "[App]\nalg=SHA256\n", u"App/alg"_s, u"MD5"_s);
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
    const QString expected = opened ? path : volume_root(dir.path());
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
    QTest::newRow("no file") << QByteArray();
    for (int i = 0; i < 3; ++i) {
        QByteArray junk(0x4000, Qt::Uninitialized);
        random.fillRange(reinterpret_cast<quint32*>(junk.data()), junk.size() / 4);
        QTest::addRow("junk %d", i) << junk;
        QTest::addRow("junk %d below a group", i) << "[MainWindow]\nsize=" + junk;
    }
    QTest::newRow("cut off") << QByteArray("[MainWindow]\nsize=@Size(64");
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
    if (!content.isEmpty()) {
        fixture.working_dir.createFile(file_name, content);
    }
    fixture.rebuild();
    QCOMPARE(QFile::exists(file_name), !content.isEmpty()); // nothing is written before the end
    QCOMPARE(fixture.window->size(), QSize(800, 600));
    QCOMPARE(fixture.window->pos(), QPoint(100, 200));
    QVERIFY(fixture.radio(u"MD5"_s)->isChecked());
    for (const MyTreeWidget* pane : {fixture.first, fixture.second}) {
        QVERIFY(!pane->ccname && !pane->ccsize && !pane->ccpath && !pane->upper && !pane->rem_dir);
        QCOMPARE(pane->exclusions, QStringList());
        QCOMPARE(pane->current_dir().path(), QDir::rootPath());
    }
    fixture.window->resize(640, 480);
    fixture.window->writeSettings();
    fixture.rebuild();
    QCOMPARE(fixture.window->size(), QSize(640, 480));
}

void TestSettings::windows_are_brought_into_sight()
{
    // A window of 800 by 600 on a screen of 1920 by 1080 with another one to its left.
    const QList<QRect> screens = {QRect(0, 0, 1920, 1080), QRect(-1280, 0, 1280, 1024)};
    const QSize size(800, 600);
    constexpr int most = std::numeric_limits<int>::max();
    const QList<std::pair<QPoint, QPoint>> rows = {
        {{100, 200}, {100, 200}},     // in sight
        {{-1200, 300}, {-1200, 300}}, // on the second screen
        {{1856, 1000}, {1856, 1000}}, // a grip is left
        {{1857, 200}, {1120, 200}},   // too little is left
        {{100, 1060}, {100, 480}},    // below
        {{100, -10}, {100, 0}},       // title bar above
        {{-5000, -5000}, {0, 0}},     // screen gone
        {{most, most}, {1120, 480}},  // as far as numbers go
        {{-most, -most}, {0, 0}},
    };
    WindowFixture fixture;
    for (const auto& [saved, shown] : rows) {
        QCOMPARE(position_in_sight(saved, size, screens), shown);
        QCOMPARE(position_in_sight(saved, size, {}), saved);

        write_values(file_name, {{u"MainWindow/pos"_s, saved}});
        fixture.rebuild();
        const QRect screen = fixture.window->screen()->availableGeometry();
        QVERIFY(screen.intersects(QRect(fixture.window->pos(), QSize(800, 24))));
    }
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
