// What reaches a pane from outside: drops, here as events, and the paths of the command line.

#include "tests/modal_driver.h"
#include "tests/pane_fixture.h"

#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QSettings>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

// QCoreApplication reads both each time it is asked, so that a test can be "started" with paths.
int shown_argc = 1;
std::array<char*, 8> shown_argv = {};

/// The arguments of the program as long as this lives.
class CommandLine
{
  public:
    explicit CommandLine(const QStringList& arguments)
    {
        for (const QString& argument : arguments) {
            bytes_.append(argument.toLocal8Bit());
        }
        for (QByteArray& argument : bytes_) {
            shown_argv.at(static_cast<size_t>(shown_argc++)) = argument.data();
        }
    }
    ~CommandLine() { shown_argc = 1; }
    Q_DISABLE_COPY_MOVE(CommandLine)

  private:
    QList<QByteArray> bytes_;
};

/// Two directories to compare, and the window on them.
class DropFixture : public WindowFixture
{
  public:
    DropFixture()
    {
        const QList<std::pair<QString, QByteArray>> files = {
            {u"left/a.txt"_s, "same"},
            {u"left/b.txt"_s, "left"},
            {u"left/c.txt"_s, "alone"},
            {u"left/d.tmp"_s, "excluded"},
            {u"left/.hidden"_s, "hidden"},
            {u"left/sub/e.txt"_s, "below"},
            {u"left/sum.md5"_s, reference_digest("same").toLatin1() + "  a.txt\n"},
            {u"right/a.txt"_s, "same"},
            {u"right/b.txt"_s, "right"},
            {u"right/z.txt"_s, "not asked for"}};
        for (const auto& [name, content] : files) {
            working_dir.createFile(name, content);
        }
        for (MyTreeWidget* pane : {first, second}) {
            pane->set_exclus(u"*.tmp;*.ini"_s);
        }
        first->changeModel(at(u"left"_s));
        second->changeModel(at(u"right"_s));
    }

    QString at(const QString& name) const { return working_dir.at(name); }

    /// Drops what is named, parted by ", ", onto a pane and answers whether it was taken. A name
    /// with a scheme is a URL as it stands, any other a local file of the fixture.
    bool drop(MyTreeWidget& pane, const QString& names) const
    {
        QList<QUrl> urls;
        for (const QString& name : words(names)) {
            urls.append(name.contains(u"://"_s) ? QUrl(name) : QUrl::fromLocalFile(at(name)));
        }
        return drop_urls(pane, urls);
    }
};

} // namespace

class TestDrops : public QObject
{
    Q_OBJECT

  private slots:
    void lists_data();
    void lists();
    void dropped_rows_keep_their_path();
    void directory_ends_a_list();
    void reset_keeps_the_list();
    void namesakes_in_a_list();
    void data_without_urls();
    void during_a_job();
    void during_a_listing();
    void directory_overtaken_by_a_path();
    void replaced_while_the_other_pane_lists();
    void arguments_data();
    void arguments();
    void checksum_file_argument();

  private:
    /// A directory that takes longer to list than the window is willing to stand still.
    QString many_files();

    TestDir many_;
};

QString TestDrops::many_files()
{
    QString target = many_.filePath(u"target"_s);
    if (!QFile::exists(target)) {
        many_.createFile(u"target"_s);
        // Links to links, because a listing has to follow each of them to its end.
        for (int i = 0; i < 1000; ++i) {
            const QString link = many_.filePath(QString::number(i));
            if (!QFile::link(target, link) || !QFileInfo(link).isSymLink()) {
                break; // a shortcut, made slowly and quickly read
            }
            target = i < 30 ? link : target;
        }
    }
    return many_.at();
}

void TestDrops::lists_data()
{
    QTest::addColumn<QString>("dropped");
    QTest::addColumn<QString>("rows"); // with their marks
    QTest::addColumn<QString>("other_hashed");
    const auto row = [](const char* title, const QString& dropped, const QString& rows,
                        const QString& other_hashed) {
        QTest::newRow(title) << dropped << rows << other_hashed;
    };
    const QString a = u"left/a.txt"_s;
    row("one file", a, u"a.txt green"_s, u"a.txt"_s);
    row("several, sorted", u"left/c.txt, left/b.txt, left/a.txt"_s,
        u"a.txt green, b.txt red, c.txt yellow"_s, u"a.txt, b.txt"_s);
    row("from several directories", u"left/sub/e.txt, left/a.txt"_s, u"a.txt green, e.txt yellow"_s,
        u"a.txt"_s);
    row("twice the same", u"left/a.txt, left/a.txt"_s, u"a.txt green, a.txt green"_s, u"a.txt"_s);
    row("mixture", u"left/sub, left/none.txt, http://example.org/left/b.txt, left/a.txt, left"_s,
        u"a.txt green"_s, u"a.txt"_s);
    row("excluded type", u"left/d.tmp, left/a.txt"_s, u"a.txt green, d.tmp "_s, u"a.txt"_s);
    row("two directories", u"left, right"_s, {}, {});
    row("a directory and an address", u"left, http://example.org/left/a.txt"_s, {}, {});
    row("only a missing file", u"left/none.txt"_s, {}, {});
}

void TestDrops::lists()
{
    QFETCH(QString, dropped);
    QFETCH(QString, rows);

    DropFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    const QString entry = pane.drive_combo->currentText();
    const QString status = pane.status_label->text();
    QVERIFY(fixture.drop(pane, dropped));
    QVERIFY(fixture.wait_idle());

    QStringList shown;
    for (const QString& name : words(shown_in(pane))) {
        shown.append(name + u' ' + mark_at(pane, name));
        QCOMPARE(checksum_at(pane, name).isEmpty(), mark_at(pane, name).isEmpty());
    }
    QCOMPARE(shown.join(u", "_s), rows);
    QCOMPARE(pane.in_custom_mode(), !rows.isEmpty());
    if (rows.isEmpty()) {
        QCOMPARE(pane.drive_combo->currentText(), entry);
        QCOMPARE(pane.status_label->text(), status);
    }
    QTEST(hashed_in(*fixture.second), "other_hashed");
    QVERIFY(!fixture.second->in_custom_mode());

    // One entry for the list, however many lists there were.
    const int entries = pane.drive_combo->count();
    QVERIFY(fixture.drop(pane, dropped));
    QVERIFY(fixture.wait_idle());
    QCOMPARE(pane.drive_combo->count(), entries);
}

void TestDrops::dropped_rows_keep_their_path()
{
    DropFixture fixture;
    const QString path = fixture.at(u"left/sub/../a.txt"_s);
    QVERIFY(drop_files(*fixture.first, {path}));
    QVERIFY(fixture.wait_idle());
    const QTreeWidgetItem* row = find_row(*fixture.first, u"a.txt"_s);
    QCOMPARE(path_of(*row), path);
    QVERIFY(!row->icon(ColName).isNull());
}

void TestDrops::directory_ends_a_list()
{
    DropFixture fixture;
    MyTreeWidget& pane = *fixture.second;
    const QString entry = pane.drive_combo->currentText();
    QVERIFY(fixture.drop(pane, u"left/a.txt"_s));
    QVERIFY(fixture.wait_idle());
    QVERIFY(pane.in_custom_mode());

    fixture.first->Reset();
    QVERIFY(fixture.drop(pane, u"left"_s));
    QVERIFY(fixture.wait_idle());
    QVERIFY(!pane.in_custom_mode());
    QCOMPARE(pane.drive_combo->currentText(), entry);
    QCOMPARE(pane.current_dir().path(), fixture.at(u"left"_s));
    QCOMPARE(shown_in(pane), u".., sub, a.txt, b.txt, c.txt, d.tmp, sum.md5"_s);
    QCOMPARE(hashed_in(pane), u"a.txt, b.txt, c.txt, sum.md5"_s);
    QCOMPARE(hashed_in(*fixture.first), QString());
}

void TestDrops::reset_keeps_the_list()
{
    DropFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    QVERIFY(fixture.drop(pane, u"left/a.txt, left/c.txt"_s));
    QVERIFY(fixture.wait_idle());
    fixture.action(u"Réinitialiser"_s)->trigger();
    QVERIFY(pane.in_custom_mode());
    QCOMPARE(shown_in(pane), u"a.txt, c.txt"_s);
    QCOMPARE(hashed_in(pane), QString());
    QCOMPARE(mark_at(pane, u"c.txt"_s), u"white"_s);

    QVERIFY(fixture.compare_all());
    QCOMPARE(mark_at(pane, u"a.txt"_s), u"green"_s);
    QCOMPARE(mark_at(*fixture.second, u"z.txt"_s), u"yellow"_s);
}

// Of a list, all namesakes of what is dropped onto the other pane are hashed, and nothing else.
void TestDrops::namesakes_in_a_list()
{
    DropFixture fixture;
    MyTreeWidget& list = *fixture.second;
    fixture.working_dir.createFile(u"more/a.txt"_s, "other");
    QVERIFY(fixture.drop(list, u"right/z.txt, left/a.txt, more/a.txt"_s));
    QVERIFY(fixture.wait_idle());
    fixture.clear_message();
    select_names(list, {u"z.txt"_s});
    QVERIFY(fixture.drop(*fixture.first, u"left/a.txt"_s));
    QVERIFY(fixture.wait_idle());
    QCOMPARE(hashed_in(list), u"a.txt, a.txt"_s);
    QCOMPARE(mark_at(list, u"z.txt"_s), u"white"_s);
    QCOMPARE(mark_at(*fixture.first, u"a.txt"_s), u"green"_s);
}

void TestDrops::data_without_urls()
{
    DropFixture fixture;
    const QString before = shown_in(*fixture.first);
    QMimeData text;
    text.setText(fixture.at(u"left/a.txt"_s));
    QVERIFY(!drag_in(*fixture.first, text));
    // Nor where it came in as something else.
    QVERIFY(!let_go(*fixture.first, text));
    QCOMPARE(shown_in(*fixture.first), before);
}

void TestDrops::during_a_job()
{
    DropFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    HUGE_FILE_OR_SKIP(fixture.working_dir, u"left/huge.bin"_s);
    pane.Reset();
    const QString before = shown_in(pane);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(fixture.at(u"right/z.txt"_s))});

    QVERIFY(drag_in(pane, data)); // while nothing runs yet
    select_names(pane, {u"a.txt"_s, u"huge.bin"_s});
    pane.HashThis();
    QTRY_COMPARE(pane.job_items.size(), 1);
    QVERIFY(!let_go(pane, data));
    QVERIFY(!drag_in(pane, data));
    QCOMPARE(shown_in(pane), before);
    QCOMPARE(pane.job_items.size(), 1);
    QVERIFY(!pane.in_custom_mode());

    pane.stop_thread();
    QVERIFY(fixture.wait_idle());
    QVERIFY(fixture.drop(pane, u"right/z.txt"_s));
    QVERIFY(fixture.wait_idle());
    QCOMPARE(shown_in(pane), u"z.txt"_s);
}

void TestDrops::during_a_listing()
{
    const QList<std::pair<QString, QString>> rows = {
        {u"left/b.txt, left/a.txt"_s, u"a.txt, b.txt"_s}, {u"right"_s, u"a.txt, b.txt, z.txt"_s}};
    for (const auto& row : rows) {
        DropFixture fixture;
        MyTreeWidget& pane = *fixture.first;
        bool listing = true;
        bool dropped_meanwhile = false;
        bool taken = false;
        QTimer::singleShot(0, &pane, [&] {
            dropped_meanwhile = listing;
            taken = fixture.drop(pane, row.first);
        });
        pane.changeModel(many_files());
        listing = false;
        QVERIFY(fixture.wait_idle());
        if (!dropped_meanwhile) {
            QSKIP("many files are listed at once here");
        }
        QVERIFY(taken);
        QVERIFY(pane.topLevelItemCount() <= 4); // nothing of the listing that was overtaken
        QCOMPARE(hashed_in(pane), row.second);
    }
}

// What the path shows was not dropped, and is not hashed.
void TestDrops::directory_overtaken_by_a_path()
{
    DropFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    QVERIFY(fixture.drop(pane, u"right/a.txt, right/b.txt"_s));
    QVERIFY(fixture.wait_idle());
    bool listing = true;
    bool overtaken = false;
    QTimer::singleShot(0, &pane, [&] {
        overtaken = listing;
        pane.changeModel(fixture.at(u"left"_s));
    });
    QVERIFY(drop_urls(pane, {QUrl::fromLocalFile(many_files())}));
    listing = false;
    QVERIFY(fixture.wait_idle());
    if (!overtaken) {
        QSKIP("many files are listed at once here");
    }
    QCOMPARE(pane.current_dir().path(), fixture.at(u"left"_s));
    QCOMPARE(hashed_in(pane), QString());
}

// The rows of the first drop die while the other pane is read again for their namesakes.
void TestDrops::replaced_while_the_other_pane_lists()
{
    DropFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    fixture.second->changeModel(many_files());
    bool replaced = false;
    QTimer::singleShot(0, &pane,
                       [&] { replaced = fixture.drop(pane, u"right/z.txt, right/a.txt"_s); });
    QVERIFY(fixture.drop(pane, u"left/c.txt, left/b.txt, left/a.txt"_s));
    const bool replaced_meanwhile = replaced;
    QVERIFY(fixture.wait_idle());
    if (!replaced_meanwhile) {
        QSKIP("many files are listed at once here");
    }
    QCOMPARE(shown_in(pane), u"a.txt, z.txt"_s);
    QCOMPARE(hashed_in(pane), u"a.txt, z.txt"_s);
}

void TestDrops::arguments_data()
{
    QTest::addColumn<QString>("arguments"); // {} is the fixture's directory
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("hashed");
    const auto row = [](const char* title, const QString& arguments, const QString& shown,
                        const QString& hashed) {
        QTest::newRow(title) << arguments << shown << hashed;
    };
    row("file", u"{}/right/b.txt"_s, u"right"_s, u"b.txt"_s);
    row("file here", u"a.txt"_s, u"left"_s, u"a.txt"_s);
    row("file below", u"sub/e.txt"_s, u"left/sub"_s, u"e.txt"_s);
    row("excluded type", u"{}/left/d.tmp"_s, u"left"_s, u"d.tmp"_s);
    row("hidden file", u"{}/left/.hidden"_s, u"left"_s, {});
    row("missing file", u"{}/right/none.txt"_s, u""_s, {});
    row("directory", u"{}/left/sub"_s, u"left/sub"_s, u"e.txt"_s);
    row("directory as a shell completes it", u"sub/"_s, u"left/sub"_s, u"e.txt"_s);
    row("this directory", u"."_s, u"left"_s, u"a.txt, b.txt, c.txt, sum.md5"_s);
    row("two files", u"{}/left/c.txt, {}/left/a.txt"_s, u"left"_s, u"a.txt, c.txt"_s);
    row("two files beside", u"../right/a.txt, ../right/z.txt"_s, u"right"_s, u"a.txt, z.txt"_s);
    row("one excluded", u"a.txt, d.tmp"_s, u"left"_s, u"a.txt"_s);
    row("checksum files are hashed like others", u"a.txt, sum.md5"_s, u"left"_s,
        u"a.txt, sum.md5"_s);
    row("the last file's directory", u"a.txt, {}/right/z.txt, sub, none"_s, u"right"_s, u"z.txt"_s);
    row("another spelling of the path", u"{}/left/sub/../a.txt, c.txt"_s, u"left"_s, u"c.txt"_s);
    row("no file", u"{}/left, none.txt"_s, u""_s, {});
}

void TestDrops::arguments()
{
    QFETCH(QString, arguments);
    QFETCH(QString, shown);

    DropFixture fixture;
    arguments.replace(u"{}"_s, fixture.at(u""_s));
    fixture.window->writeSettings(); // for the excluded types
    QFile::rename(u"Tavrel.ini"_s, u"left/Tavrel.ini"_s);
    QDir::setCurrent(fixture.at(u"left"_s));
    const CommandLine started_with(words(QDir::toNativeSeparators(arguments)));
    fixture.rebuild();
    QVERIFY(fixture.wait_idle());
    QCOMPARE(fixture.first->current_dir().canonicalPath(),
             shown.isEmpty() ? volume_root(fixture.at(u"left"_s)) : fixture.at(shown));
    QTEST(hashed_in(*fixture.first), "hashed");
    QCOMPARE(hashed_in(*fixture.second), QString());

    // The directory of the start before is kept for the next one.
    fixture.window->writeSettings();
    QCOMPARE(QSettings(u"Tavrel.ini"_s, QSettings::IniFormat).value(u"App/tree1"_s).toString(),
             fixture.at(u"left"_s));
}

void TestDrops::checksum_file_argument()
{
    DropFixture fixture;
    QString title;
    const ModalDriver<QMessageBox> driver([&](QMessageBox& box) { title = box.windowTitle(); });
    QStringList arguments{fixture.at(u"left/sum.md5"_s)};
    emit fixture.window->send_args(arguments);
    QTRY_VERIFY(driver.met());
    QCOMPARE(title, u"Ok"_s);
    QVERIFY(fixture.wait_idle());
    QCOMPARE(selected_in(*fixture.first), u"sum.md5"_s);
}

int main(int argc, char* argv[])
{
    // Another name than the process's own: as long as these look like its arguments, Windows is
    // asked for them instead.
    QByteArray program("shown");
    shown_argv[0] = program.data();
    QApplication application(shown_argc, shown_argv.data());
    TestDrops test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_drops.moc"
