// What reaches a pane from outside: drops, here as events, and the paths of the command line.

#include "tests/modal_driver.h"
#include "tests/pane_fixture.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QMessageBox>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

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

bool drag_in(MyTreeWidget& pane, const QMimeData& data)
{
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(pane.viewport(), &enter);
    return enter.isAccepted();
}

bool let_go(MyTreeWidget& pane, const QMimeData& data)
{
    QDropEvent event(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    QApplication::sendEvent(pane.viewport(), &event);
    return event.isAccepted();
}

/// Drags URLs onto the pane and lets go; answers whether they were taken.
bool drop(MyTreeWidget& pane, const QList<QUrl>& urls)
{
    QMimeData data;
    data.setUrls(urls);
    return drag_in(pane, data) && let_go(pane, data);
}

QStringList top_names(const MyTreeWidget& pane)
{
    QStringList names;
    for (int i = 0; i < pane.topLevelItemCount(); ++i) {
        names.append(name_of(*pane.topLevelItem(i)));
    }
    return names;
}

/// The names of the top-level rows that carry a checksum.
QStringList hashed_names(const MyTreeWidget& pane)
{
    QStringList names;
    for (int i = 0; i < pane.topLevelItemCount(); ++i) {
        if (!checksum_of(*pane.topLevelItem(i)).isEmpty()) {
            names.append(name_of(*pane.topLevelItem(i)));
        }
    }
    return names;
}

/// Two directories to compare, and the window on them.
class DropFixture : public WindowFixture
{
  public:
    DropFixture()
    {
        working_dir.createFile(u"left/a.txt"_s, "same");
        working_dir.createFile(u"left/b.txt"_s, "left");
        working_dir.createFile(u"left/c.txt"_s, "alone");
        working_dir.createFile(u"left/d.tmp"_s, "excluded");
        working_dir.createFile(u"left/.hidden"_s, "hidden");
        working_dir.createFile(u"left/sub/e.txt"_s, "below");
        working_dir.createFile(u"left/sum.md5"_s,
                               reference_digest("same").toLatin1() + "  a.txt\n");
        working_dir.createFile(u"right/a.txt"_s, "same");
        working_dir.createFile(u"right/b.txt"_s, "right");
        working_dir.createFile(u"right/z.txt"_s, "not asked for");
        for (MyTreeWidget* pane : {first, second}) {
            pane->set_exclus(u"*.tmp"_s);
        }
        first->changeModel(at(u"left"_s));
        second->changeModel(at(u"right"_s));
    }

    QString at(const QString& name) const { return working_dir.at(name); }

    /// A name with a scheme is a URL as it stands, any other a local file of the fixture.
    QList<QUrl> urls(const QStringList& names) const
    {
        QList<QUrl> all;
        for (const QString& name : names) {
            all.append(name.contains(u"://"_s) ? QUrl(name) : QUrl::fromLocalFile(at(name)));
        }
        return all;
    }

    QString shown_dir() const { return first->current_dir().canonicalPath(); }
};

} // namespace

class TestDrops : public QObject
{
    Q_OBJECT

  private slots:
    void lists_data();
    void lists();
    void dropped_rows_keep_their_path();
    void directory();
    void directory_ends_custom_mode();
    void reset_keeps_the_list();
    void data_without_urls();
    void during_a_job();
    void during_a_listing_data();
    void during_a_listing();
    void replaced_while_the_other_pane_lists();

    void one_argument_data();
    void one_argument();
    void checksum_file_argument();
    void several_arguments_data();
    void several_arguments();
    void command_line_data();
    void command_line();

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
    QTest::addColumn<QStringList>("dropped");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<QStringList>("marks");
    QTest::addColumn<QStringList>("other_hashed");

    const auto add = [](const char* name, const QStringList& dropped, const QStringList& rows,
                        const QStringList& marks, const QStringList& other_hashed) {
        QTest::newRow(name) << dropped << rows << marks << other_hashed;
    };
    const QString a = u"left/a.txt"_s;
    add("one file", {a}, {u"a.txt"_s}, {u"green"_s}, {u"a.txt"_s});
    add("several, sorted", {u"left/c.txt"_s, u"left/b.txt"_s, a},
        {u"a.txt"_s, u"b.txt"_s, u"c.txt"_s}, {u"green"_s, u"red"_s, u"yellow"_s},
        {u"a.txt"_s, u"b.txt"_s});
    add("from several directories", {u"left/sub/e.txt"_s, a}, {u"a.txt"_s, u"e.txt"_s},
        {u"green"_s, u"yellow"_s}, {u"a.txt"_s});
    add("twice the same", {a, a}, {u"a.txt"_s, u"a.txt"_s}, {}, {u"a.txt"_s});
    add("mixture",
        {u"left/sub"_s, u"left/none.txt"_s, u"http://example.org/left/b.txt"_s, a, u"left"_s},
        {u"a.txt"_s}, {u"green"_s}, {u"a.txt"_s});
    add("excluded type", {u"left/d.tmp"_s, a}, {u"a.txt"_s, u"d.tmp"_s}, {u"green"_s, {}},
        {u"a.txt"_s});
    add("two directories", {u"left"_s, u"right"_s}, {}, {}, {});
    add("only an address", {u"http://example.org/left/a.txt"_s}, {}, {}, {});
    add("only a missing file", {u"left/none.txt"_s}, {}, {}, {});
}

void TestDrops::lists()
{
    QFETCH(QStringList, dropped);
    QFETCH(QStringList, rows);
    QFETCH(QStringList, marks);
    QFETCH(QStringList, other_hashed);

    DropFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    const QString entry = pane.drive_combo->currentText();
    const QString status = pane.status_label->text();

    QVERIFY(drop(pane, fixture.urls(dropped)));
    QVERIFY(fixture.wait_idle());

    QCOMPARE(top_names(pane), rows);
    QCOMPARE(pane.in_custom_mode(), !rows.isEmpty());
    if (rows.isEmpty()) {
        QCOMPARE(pane.drive_combo->currentText(), entry);
        QCOMPARE(pane.status_label->text(), status);
    }
    for (qsizetype i = 0; i < marks.size(); ++i) {
        QCOMPARE(mark_at(pane, rows[i]), marks[i]);
        QCOMPARE(checksum_at(pane, rows[i]).isEmpty(), marks[i].isEmpty());
    }
    QCOMPARE(hashed_names(*fixture.second), other_hashed);
    QVERIFY(!fixture.second->in_custom_mode());

    // One entry for the list, however many lists there were.
    const int entries = pane.drive_combo->count();
    QVERIFY(drop(pane, fixture.urls(dropped)));
    QVERIFY(fixture.wait_idle());
    QCOMPARE(pane.drive_combo->count(), entries);
}

void TestDrops::dropped_rows_keep_their_path()
{
    DropFixture fixture;
    const QString path = fixture.at(u"left/sub/../a.txt"_s);
    QVERIFY(drop(*fixture.first, {QUrl::fromLocalFile(path)}));
    QVERIFY(fixture.wait_idle());
    const QTreeWidgetItem* row = find_row(*fixture.first, u"a.txt"_s);
    QCOMPARE(path_of(*row), path);
    QCOMPARE(row->text(ColSize), u"1 Ko"_s);
    QCOMPARE(row->type(), int(TypeFile));
    QVERIFY(!row->icon(ColName).isNull());
}

void TestDrops::directory()
{
    DropFixture fixture;
    MyTreeWidget& pane = *fixture.second;
    QVERIFY(drop(pane, fixture.urls({u"left"_s})));
    QVERIFY(fixture.wait_idle());
    QCOMPARE(hashed_names(pane), QStringList({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s, u"sum.md5"_s}));
    QCOMPARE(pane.topLevelItemCount(), 7); // "..", sub and d.tmp beside them
    QCOMPARE(pane.current_dir().path(), fixture.at(u"left"_s));
    QVERIFY(!pane.in_custom_mode());
    QCOMPARE(hashed_names(*fixture.first), QStringList());
}

void TestDrops::directory_ends_custom_mode()
{
    DropFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    const QString entry = pane.drive_combo->currentText();
    QVERIFY(drop(pane, fixture.urls({u"left/a.txt"_s})));
    QVERIFY(fixture.wait_idle());
    QVERIFY(pane.in_custom_mode());

    QVERIFY(drop(pane, fixture.urls({u"right"_s})));
    QVERIFY(fixture.wait_idle());
    QVERIFY(!pane.in_custom_mode());
    QCOMPARE(pane.drive_combo->currentText(), entry);
    QCOMPARE(hashed_names(pane), QStringList({u"a.txt"_s, u"b.txt"_s, u"z.txt"_s}));
}

void TestDrops::reset_keeps_the_list()
{
    DropFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    QVERIFY(drop(pane, fixture.urls({u"left/a.txt"_s, u"left/c.txt"_s})));
    QVERIFY(fixture.wait_idle());
    fixture.action(u"Réinitialiser"_s)->trigger();
    QVERIFY(pane.in_custom_mode());
    QCOMPARE(top_names(pane), QStringList({u"a.txt"_s, u"c.txt"_s}));
    QCOMPARE(hashed_names(pane), QStringList());
    QCOMPARE(mark_at(pane, u"c.txt"_s), u"white"_s);

    QVERIFY(fixture.compare_all());
    QCOMPARE(mark_at(pane, u"a.txt"_s), u"green"_s);
    QCOMPARE(mark_at(*fixture.second, u"z.txt"_s), u"yellow"_s);
}

void TestDrops::data_without_urls()
{
    DropFixture fixture;
    const QStringList before = top_names(*fixture.first);
    QMimeData text;
    text.setText(fixture.at(u"left/a.txt"_s));
    QVERIFY(!drag_in(*fixture.first, text));

    // Let go with other data than it came in with.
    QMimeData data;
    data.setUrls(fixture.urls({u"left/a.txt"_s}));
    QVERIFY(drag_in(*fixture.first, data));
    QVERIFY(!let_go(*fixture.first, text));
    QCOMPARE(top_names(*fixture.first), before);
}

void TestDrops::during_a_job()
{
    DropFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    QFile huge(fixture.working_dir.createFile(u"left/huge.bin"_s));
    QVERIFY(huge.open(QIODevice::ReadWrite) && huge.resize(qint64(64) << 30));
    pane.Reset();
    const QStringList before = top_names(pane);
    QMimeData data;
    data.setUrls(fixture.urls({u"right/z.txt"_s}));

    QVERIFY(drag_in(pane, data)); // while nothing runs yet
    select_names(pane, {u"a.txt"_s, u"huge.bin"_s});
    pane.HashThis();
    QTRY_COMPARE(pane.job_items.size(), 1);
    QVERIFY(!let_go(pane, data));
    QVERIFY(!drag_in(pane, data));
    QCOMPARE(top_names(pane), before);
    QCOMPARE(pane.job_items.size(), 1);
    QVERIFY(!pane.in_custom_mode());

    pane.stop_thread();
    QVERIFY(fixture.wait_idle());
    QVERIFY(drop(pane, fixture.urls({u"right/z.txt"_s})));
    QVERIFY(fixture.wait_idle());
    QCOMPARE(top_names(pane), QStringList(u"z.txt"_s));
}

void TestDrops::during_a_listing_data()
{
    QTest::addColumn<QStringList>("dropped");
    QTest::addColumn<QStringList>("hashed");
    QTest::newRow("files") << QStringList{u"left/b.txt"_s, u"left/a.txt"_s}
                           << QStringList{u"a.txt"_s, u"b.txt"_s};
    QTest::newRow("directory") << QStringList{u"right"_s}
                               << QStringList{u"a.txt"_s, u"b.txt"_s, u"z.txt"_s};
}

void TestDrops::during_a_listing()
{
    QFETCH(QStringList, dropped);
    QFETCH(QStringList, hashed);

    DropFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    bool listing = true;
    bool dropped_meanwhile = false;
    bool taken = false;
    QTimer::singleShot(0, &pane, [&] {
        dropped_meanwhile = listing;
        taken = drop(pane, fixture.urls(dropped));
    });
    pane.changeModel(many_files());
    listing = false;
    QVERIFY(fixture.wait_idle());
    if (!dropped_meanwhile) {
        QSKIP("many files are listed at once here");
    }
    QVERIFY(taken);
    QVERIFY(pane.topLevelItemCount() <= 4); // nothing of the listing that was overtaken
    QCOMPARE(hashed_names(pane), hashed);
}

// The rows of the first drop die while the other pane is read again for their namesakes.
void TestDrops::replaced_while_the_other_pane_lists()
{
    DropFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    fixture.second->changeModel(many_files());
    bool replaced = false;
    QTimer::singleShot(0, &pane, [&] {
        replaced = drop(pane, fixture.urls({u"right/z.txt"_s, u"right/a.txt"_s}));
    });
    QVERIFY(drop(pane, fixture.urls({u"left/c.txt"_s, u"left/b.txt"_s, u"left/a.txt"_s})));
    const bool replaced_meanwhile = replaced;
    QVERIFY(fixture.wait_idle());
    if (!replaced_meanwhile) {
        QSKIP("many files are listed at once here");
    }
    QCOMPARE(top_names(pane), QStringList({u"a.txt"_s, u"z.txt"_s}));
    QCOMPARE(hashed_names(pane), top_names(pane));
}

void TestDrops::one_argument_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QStringList>("hashed");

    QTest::newRow("file") << u"right/b.txt"_s << u"right"_s << QStringList(u"b.txt"_s);
    QTest::newRow("excluded type") << u"left/d.tmp"_s << u"left"_s << QStringList(u"d.tmp"_s);
    QTest::newRow("directory") << u"left/sub"_s << u"left/sub"_s << QStringList(u"e.txt"_s);
    QTest::newRow("hidden file") << u"left/.hidden"_s << u"left"_s << QStringList();
    QTest::newRow("missing") << u"right/none.txt"_s << u"empty"_s << QStringList();
}

void TestDrops::one_argument()
{
    QFETCH(QString, argument);
    QFETCH(QString, shown);
    QFETCH(QStringList, hashed);

    DropFixture fixture;
    fixture.working_dir.createDir(u"empty"_s);
    fixture.first->changeModel(fixture.at(u"empty"_s));
    QStringList arguments{fixture.at(argument)};
    QSignalSpy finished(&fixture.first->job_watcher, &QFutureWatcherBase::finished);
    emit fixture.window->send_args(arguments);
    QVERIFY(fixture.wait_idle());
    QCOMPARE(fixture.shown_dir(), fixture.at(shown));
    QCOMPARE(hashed_names(*fixture.first), hashed);
    QCOMPARE(finished.count(), hashed.isEmpty() ? 0 : 1);
    QCOMPARE(hashed_names(*fixture.second), QStringList());
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
    QVERIFY(find_row(*fixture.first, u"sum.md5"_s)->isSelected());
}

void TestDrops::several_arguments_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QStringList>("hashed");

    const QString a = u"left/a.txt"_s;
    QTest::newRow("two files") << QStringList{u"left/c.txt"_s, a} << u"left"_s
                               << QStringList{u"a.txt"_s, u"c.txt"_s};
    QTest::newRow("one excluded") << QStringList{a, u"left/d.tmp"_s} << u"left"_s
                                  << QStringList{u"a.txt"_s};
    QTest::newRow("checksum files are hashed like others")
        << QStringList{a, u"left/sum.md5"_s} << u"left"_s << QStringList{u"a.txt"_s, u"sum.md5"_s};
    QTest::newRow("the last file's directory")
        << QStringList{a, u"right/z.txt"_s, u"left/sub"_s, u"left/none"_s} << u"right"_s
        << QStringList{u"z.txt"_s};
    QTest::newRow("another spelling of the path")
        << QStringList{u"left/sub/../a.txt"_s, u"left/c.txt"_s} << u"left"_s
        << QStringList{u"c.txt"_s};
    QTest::newRow("no file") << QStringList{u"left"_s, u"left/none.txt"_s} << u"empty"_s
                             << QStringList{};
}

void TestDrops::several_arguments()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, shown);
    QFETCH(QStringList, hashed);

    DropFixture fixture;
    fixture.working_dir.createDir(u"empty"_s);
    fixture.first->changeModel(fixture.at(u"empty"_s));
    for (QString& argument : arguments) {
        argument = QDir::toNativeSeparators(fixture.at(argument));
    }
    emit fixture.window->send_args(arguments);
    QVERIFY(fixture.wait_idle());
    QCOMPARE(fixture.shown_dir(), fixture.at(shown));
    QCOMPARE(hashed_names(*fixture.first), hashed);
}

void TestDrops::command_line_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QStringList>("hashed");

    QTest::newRow("file here") << QStringList{u"a.txt"_s} << u"left"_s << QStringList{u"a.txt"_s};
    QTest::newRow("file below") << QStringList{u"sub/e.txt"_s} << u"left/sub"_s
                                << QStringList{u"e.txt"_s};
    QTest::newRow("files here") << QStringList{u"c.txt"_s, u"a.txt"_s} << u"left"_s
                                << QStringList{u"a.txt"_s, u"c.txt"_s};
    QTest::newRow("files beside") << QStringList{u"../right/a.txt"_s, u"../right/z.txt"_s}
                                  << u"right"_s << QStringList{u"a.txt"_s, u"z.txt"_s};
    QTest::newRow("directory below")
        << QStringList{u"sub"_s} << u"left/sub"_s << QStringList{u"e.txt"_s};
    QTest::newRow("directory as a shell completes it")
        << QStringList{u"sub/"_s} << u"left/sub"_s << QStringList{u"e.txt"_s};
    QTest::newRow("this directory")
        << QStringList{u"."_s} << u"left"_s
        << QStringList{u"a.txt"_s, u"b.txt"_s, u"c.txt"_s, u"sum.md5"_s};
}

void TestDrops::command_line()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, shown);
    QFETCH(QStringList, hashed);

    DropFixture fixture;
    fixture.window->writeSettings(); // for the excluded type
    QFile::rename(u"Tavrel.ini"_s, u"left/Tavrel.ini"_s);
    QDir::setCurrent(fixture.at(u"left"_s));
    const CommandLine started_with(arguments);
    fixture.rebuild();
    QVERIFY(fixture.wait_idle());
    QCOMPARE(fixture.shown_dir(), fixture.at(shown));
    QStringList rows = hashed_names(*fixture.first);
    rows.removeAll(u"Tavrel.ini"_s);
    QCOMPARE(rows, hashed);
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
