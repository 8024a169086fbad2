// A pane without jobs: what it consists of, its rows, and its way through the file system.

#include "platform/volumes.h"
#include "rows/size_text.h"
#include "tests/modal_driver.h"
#include "tests/pane_fixture.h"

#include <QDir>
#include <QMessageBox>
#include <QScrollBar>
#include <QStatusBar>
#include <QTest>
#include <QThread>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

// Wine, which has to tell a name from all others whatever their case, takes minutes for more.
const int many = QSysInfo::productType() == "windows"_L1 ? 4'000 : 20'000;

/// Of each row below another: type, "+" for an expander, name, size, alignments of size and
/// checksum.
QStringList describe_children(const QTreeWidgetItem& parent)
{
    QStringList rows;
    for (int i = 0; i < parent.childCount(); ++i) {
        const QTreeWidgetItem& row = *parent.child(i);
        const bool expander = row.childIndicatorPolicy() == QTreeWidgetItem::ShowIndicator;
        rows.append(u"%1%2 %3 [%4] %5 %6"_s.arg(row.type())
                        .arg(expander ? u"+"_s : QString(), name_of(row), row.text(ColSize))
                        .arg(row.textAlignment(ColSize))
                        .arg(row.textAlignment(ColHash)));
    }
    return rows;
}

/// Makes adding rows as slow as it would be on a small machine.
void slow_down(const MyTreeWidget& pane)
{
    QObject::connect(pane.model(), &QAbstractItemModel::rowsInserted, [] { QThread::msleep(45); });
}

} // namespace

class TestPane : public QObject
{
    Q_OBJECT

  private slots:
    void initTestCase();
    void init();
    void cleanup();
    void size_texts();
    void header_and_controls();
    void methods_are_found_by_name();
    void listed_rows();
    void directories_are_listed_when_expanded();
    void names_survive();
    void path_line_falls_back_data();
    void path_line_falls_back();
    void activated_rows();
    void activated_checksum_files();
    void reset_keeps_the_scroll_position();
    void update_view_finds_the_row_again();
    void update_view_ends_a_list_of_dropped_files();
    void large_listing_leaves_the_window_alive();
    void overtaken_listing_leaves_no_row_data();
    void overtaken_listing_leaves_no_row();

  private:
    MyTreeWidget& pane() const { return *window_->first; }
    void type_path(const QString& path) const;

    std::unique_ptr<TestDir> large_;
    std::unique_ptr<TestDir> dir_;
    std::unique_ptr<WindowFixture> window_;
};

void TestPane::initTestCase()
{
    large_ = std::make_unique<TestDir>();
    for (int i = 0; i < many; ++i) {
        QFile file(large_->filePath(u"file %1"_s.arg(i)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
}

void TestPane::init()
{
    dir_ = std::make_unique<TestDir>();
    window_ = std::make_unique<WindowFixture>();
}

void TestPane::cleanup()
{
    window_.reset();
    dir_.reset();
}

void TestPane::type_path(const QString& path) const
{
    pane().path_edit->setText(path);
    QTest::keyClick(pane().path_edit, Qt::Key_Return);
}

void TestPane::size_texts()
{
    const QList<std::pair<qint64, QString>> rows = {
        {0, u"1 Ko"_s},
        {1000, u"1 Ko"_s},
        {1535, u"1 Ko"_s},
        {1536, u"2 Ko"_s},
        {1'023'999, u"1000 Ko"_s},
        {1'024'000, u"1 Mo"_s},
        {1'048'575'999, u"1000 Mo"_s},
        {1'048'576'000, u"1 Go"_s},
        {1'610'612'735, u"1 Go"_s},
        {1'610'612'736, u"2 Go"_s},
        {1'073'741'823'999, u"1000 Go"_s},
        {1'073'741'824'000, u"Trop Gros"_s},
        {std::numeric_limits<qint64>::max(), u"Trop Gros"_s}};
    for (const auto& [bytes, text] : rows) {
        QCOMPARE(format_size(bytes), text);
    }
}

void TestPane::header_and_controls()
{
    QStringList texts;
    for (int column = 0; column < pane().columnCount(); ++column) {
        texts.append(pane().headerItem()->text(column));
    }
    QCOMPARE(texts, (QStringList{u"Nom"_s, u"Taille"_s, QString(), u"MD5"_s}));
    QVERIFY(pane().isColumnHidden(ColPath));
    for (const QPushButton* button : {pane().stop_button, pane().reset_button}) {
        QVERIFY(!button->icon().pixmap(16).isNull());
        QVERIFY(!button->toolTip().isEmpty() && !button->accessibleName().isEmpty());
    }

    pane().changeModel(dir_->path());
    emit pane().drive_combo->textActivated(pane().drive_combo->itemText(0));
    QCOMPARE(pane().current_dir().path(), QDir::rootPath());
    QCOMPARE(pane().drive_combo->currentIndex(), 0);
}

void TestPane::methods_are_found_by_name()
{
    const QMetaObject& meta = MyTreeWidget::staticMetaObject;
    QCOMPARE(own_methods(meta, QMetaMethod::Signal),
             u"alldone() done(QString) processing(QString) prog_bar(int) "
             "concurrent_compare(QList<QTreeWidgetItem*>) checksum_hash_done_send(QString) "
             "tampon(QTreeWidgetItem*) expand_parent(QTreeWidgetItem*) "
             "icon_req(QTreeWidgetItem*,QFileInfo)"_s);
    const QString slots_by_name =
        u"showDir(QTreeWidgetItem*,int) changeModel(QString) Reset() update_view(QString) "
        "PopulateDir(QTreeWidgetItem*) expand_tree(QTreeWidgetItem*) "
        "aff_icon(QTreeWidgetItem*,QFileInfo) retrieve_path_lineedit() set_path_lineedit() "
        "set_exclus(QString) cc() ccAll() setopt(bool,bool,bool,bool,bool,bool) "
        "scrollitem(QTreeWidgetItem*,int) set_AutoScroll(bool) open_explorer() "
        "handle_args(QStringList&) HashThis() HashAll() HashDir() stop_thread() done_single() "
        "PopulateList(QTreeWidgetItem*) tampon_calculate_hash() tampon_calculate_hashdir() "
        "cc_file() cc_all_file() compute_compare(QTreeWidgetItem*) compute_compare2() checksum() "
        "checksum_hash() checksum_hash_done() changeHeaderMD5(bool) changeHeaderSHA1(bool) "
        "reactivate_all()"_s;
    const QStringList own = own_methods(meta, QMetaMethod::Slot).split(u' ');
    for (const QString& signature : slots_by_name.split(u' ')) {
        QVERIFY2(own.contains(signature), qPrintable(signature));
    }
    MyTreeWidget* answer = nullptr;
    QVERIFY(QMetaObject::invokeMethod(&pane(), "changeModel", Q_RETURN_ARG(MyTreeWidget*, answer),
                                      Q_ARG(QString, dir_->path())));
    QCOMPARE(answer, &pane());
}

void TestPane::listed_rows()
{
    dir_->createDir(u"below"_s);
    dir_->createFiles({u"zz/file"_s, u".hidden"_s});
    dir_->createFile(u"b.txt"_s, QByteArray(1536, 'b'));
    dir_->createFile(u"a.txt"_s);
    pane().changeModel(dir_->path() + u"/below/.."_s);

    const QStringList expected = {u"1001 .. [] 0 0"_s, u"1001+ below [] 0 0"_s,
                                  u"1001+ zz [] 0 0"_s, u"1002 a.txt [1 Ko] 130 128"_s,
                                  u"1002 b.txt [2 Ko] 130 128"_s};
    QCOMPARE(describe_children(*pane().invisibleRootItem()), expected);
    for (int i = 0; i < pane().topLevelItemCount(); ++i) {
        const QTreeWidgetItem& row = *pane().topLevelItem(i);
        QCOMPARE(path_of(row), i == 0 ? QFileInfo(dir_->at()).path() : dir_->at(name_of(row)));
        QVERIFY(!row.icon(ColName).isNull());
    }
}

void TestPane::directories_are_listed_when_expanded()
{
    dir_->createFiles({u"sub/b.txt"_s});
    dir_->createDir(u"sub/deep"_s);
    dir_->createDir(u"void"_s);
    pane().changeModel(dir_->path());
    QTreeWidgetItem* sub = find_row(pane(), u"sub"_s);
    QTreeWidgetItem* empty = find_row(pane(), u"void"_s);
    QCOMPARE(sub->childCount(), 0);
    sub->setExpanded(true);
    empty->setExpanded(true);
    const QStringList expected = {u"1001+ deep [] 0 0"_s, u"1002 b.txt [1 Ko] 130 128"_s};
    QCOMPARE(describe_children(*sub), expected);
    QCOMPARE(path_of(*sub->child(1)), dir_->at(u"sub/b.txt"_s));

    // Listed once; what was found empty is listed again.
    dir_->createFiles({u"sub/late.txt"_s, u"void/late.txt"_s});
    for (QTreeWidgetItem* row : {sub, empty}) {
        row->setExpanded(false);
        row->setExpanded(true);
    }
    QCOMPARE(describe_children(*sub), expected);
    QCOMPARE(describe_children(*empty), QStringList{u"1002 late.txt [1 Ko] 130 128"_s});
}

void TestPane::names_survive()
{
    const QStringList names = {u"  a   b .t t"_s,
                               u"it's \"so\" `or`"_s,
                               u"Été à Nœuf"_s,
                               u"e\u0301te\u0301"_s,
                               u"\U0001F600\U0001F468\u200D\U0001F469"_s,
                               u"<b>&amp;%1 %n"_s,
                               QString(255, u'n'),
                               QString(127, u'é') + u'e'}; // 255 bytes
    for (const QString& name : names) {
        if (!QDir(dir_->path()).mkdir(name)) {
            continue; // no such names here
        }
        dir_->createFile(name + u'/' + name, "content");
        pane().changeModel(dir_->path());
        QVERIFY(find_row(pane(), name));
        type_path(QDir::toNativeSeparators(dir_->at(name)));
        QCOMPARE(pane().status_label->text(), dir_->at(name));
        QCOMPARE(shown_in(pane()), u".., "_s + name);
        QCOMPARE(path_of(*pane().topLevelItem(1)), dir_->at(name + u'/' + name));
        pane().HashAll();
        QVERIFY(window_->wait_idle());
        QCOMPARE(checksum_at(pane(), name), reference_digest("content"));
    }
}

void TestPane::path_line_falls_back_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("directory") << u"{dir}/sub"_s << u"{dir}/sub"_s;
    QTest::newRow("detour") << u"{dir}/sub/../sub/"_s << u"{dir}/sub"_s;
    QTest::newRow("relative") << u"."_s << u"{working}"_s;
    QTest::newRow("missing") << u"{dir}/none/deeper"_s << u"{volume}"_s;
    QTest::newRow("file") << u"{dir}/file.txt"_s << u"{volume}"_s;
    QTest::newRow("selector entry") << u"{entry}"_s << u"{root}"_s;
    QTest::newRow("custom entry") << u"Personnalisé"_s << u"{root}"_s;
    QTest::newRow("nonsense") << u"\"*?<>|:%1"_s << u"{root}"_s;
    QTest::newRow("blanks") << u"   "_s << u"{root}"_s;
    QTest::newRow("nothing") << QString() << u"{root}"_s;
    QTest::newRow("long") << QString(70'000, u'x') << u"{root}"_s;
}

void TestPane::path_line_falls_back()
{
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    dir_->createFiles({u"sub/file"_s, u"file.txt"_s});
    for (QString* text : {&typed, &shown}) {
        text->replace(u"{dir}"_s, dir_->at());
        text->replace(u"{working}"_s, window_->working_dir.at());
        text->replace(u"{volume}"_s, volume_root(dir_->path()));
        text->replace(u"{entry}"_s, pane().drive_combo->itemText(0));
        text->replace(u"{root}"_s, QDir::rootPath());
    }
    pane().changeModel(dir_->path());
    type_path(typed);
    QCOMPARE(pane().current_dir().canonicalPath(), shown);
    QCOMPARE(pane().path_edit->text(), QDir::toNativeSeparators(shown));
    QCOMPARE(pane().status_label->text(), shown);
    QVERIFY(shown.startsWith(platform::root_of_entry(pane().drive_combo->currentText())));
    QVERIFY(pane().topLevelItemCount() > 0);
}

void TestPane::activated_rows()
{
    dir_->createFiles({u"sub/a.txt"_s});
    pane().changeModel(dir_->path());
    activate(pane(), u"sub"_s);
    QCOMPARE(shown_in(pane()), u".., a.txt"_s);
    QCOMPARE(pane().status_label->text(), dir_->at(u"sub"_s));
    QCOMPARE(pane().path_edit->text(), QDir::toNativeSeparators(dir_->at(u"sub"_s)));
    select_names(pane(), {u"a.txt"_s});
    activate(pane(), u"a.txt"_s);
    QVERIFY(window_->wait_idle());
    QCOMPARE(hashed_in(pane()), u"a.txt"_s);
    activate(pane(), u".."_s);
    QCOMPARE(shown_in(pane()), u".., sub"_s);
    QCOMPARE(pane().path_edit->text(), QDir::toNativeSeparators(dir_->at()));
}

void TestPane::activated_checksum_files()
{
    const QList<std::pair<QString, bool>> files = {{u"a.md5"_s, true},
                                                   {u"a.SHA1"_s, true},
                                                   {u"a.md5bak"_s, true},
                                                   {u"a.xsha1"_s, true},
                                                   {u"md5.txt"_s, false}};
    for (const auto& [name, verified] : files) {
        dir_->createFile(name);
        pane().changeModel(dir_->path());
        select_names(pane(), {name});
        // It tells that there is nothing to verify.
        const ModalDriver<QMessageBox> report([](QMessageBox&) {});
        activate(pane(), name);
        QVERIFY(window_->wait_idle());
        QCOMPARE(report.met(), verified);
        QCOMPARE(hashed_in(pane()), verified ? QString() : name);
    }
}

void TestPane::reset_keeps_the_scroll_position()
{
    for (int i = 0; i < 200; ++i) {
        dir_->createFile(u"file %1"_s.arg(i));
    }
    dir_->createFile(u"sub/a.txt"_s);
    window_->window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_->window.get()));
    pane().changeModel(dir_->path());
    expand(pane(), u"sub"_s);
    find_row(pane(), u"file 7"_s)->setText(ColHash, u"old"_s);
    select_names(pane(), {u"file 7"_s});
    QTRY_VERIFY(pane().verticalScrollBar()->maximum() > 100);
    pane().verticalScrollBar()->setValue(50);
    dir_->createFile(u"zz"_s);

    pane().reset_button->click();
    QCOMPARE(pane().verticalScrollBar()->value(), 50);
    QCOMPARE(pane().topLevelItemCount(), 203);
    QCOMPARE(find_row(pane(), u"sub"_s)->childCount(), 0);
    QCOMPARE(hashed_in(pane()) + selected_in(pane()), QString());
    pane().changeModel(dir_->path());
    QCOMPARE(pane().verticalScrollBar()->value(), 0);
}

void TestPane::update_view_finds_the_row_again()
{
    dir_->createFiles({u"old.txt"_s});
    const QList<std::pair<QString, QString>> rows = {
        {u"new.txt"_s, u"new.txt"_s}, {QString(), u"old.txt"_s}, {u"none.txt"_s, QString()}};
    for (const auto& [name, selected] : rows) {
        pane().changeModel(dir_->path());
        pane().setCurrentItem(find_row(pane(), u"old.txt"_s));
        dir_->createFiles({u"new.txt"_s});
        pane().update_view(name);
        QCOMPARE(shown_in(pane()), u".., new.txt, old.txt"_s);
        QCOMPARE(window_->window->statusBar()->currentMessage(), name);
        QCOMPARE(selected_in(pane()), selected);
    }
}

void TestPane::update_view_ends_a_list_of_dropped_files()
{
    dir_->createFiles({u"sub/a.txt"_s, u"top.txt"_s});
    pane().changeModel(dir_->path());
    QVERIFY(drop_files(pane(), {dir_->at(u"sub/a.txt"_s)}));
    QVERIFY(window_->wait_idle());
    QCOMPARE(describe_children(*pane().invisibleRootItem()),
             QStringList{u"1002 a.txt [1 Ko] 130 0"_s});
    pane().update_view(QString());
    QVERIFY(!pane().in_custom_mode());
    QCOMPARE(shown_in(pane()), u".., sub, top.txt"_s);
}

void TestPane::large_listing_leaves_the_window_alive()
{
    int ticks = 0;
    QTimer timer;
    timer.callOnTimeout([&] {
        const int rows = pane().topLevelItemCount(); // some are there, some to come
        ticks += rows > 0 && rows <= many ? 1 : 0;
    });
    timer.start(0);
    slow_down(pane());
    pane().changeModel(large_->path());
    QVERIFY(ticks > 0);
    QCOMPARE(pane().topLevelItemCount(), many + 1);
    QCOMPARE(name_of(*pane().topLevelItem(0)), u".."_s);
}

void TestPane::overtaken_listing_leaves_no_row_data()
{
    QTest::addColumn<bool>("filling");
    QTest::addColumn<bool>("reset");
    QTest::newRow("while reading: another directory") << false << false;
    QTest::newRow("while reading: reset") << false << true;
    QTest::newRow("while filling: another directory") << true << false;
    QTest::newRow("while filling: reset") << true << true;
}

void TestPane::overtaken_listing_leaves_no_row()
{
    QFETCH(bool, filling);
    QFETCH(bool, reset);
    dir_->createFile(u"only.txt"_s);
    if (filling) {
        slow_down(pane());
    }
    bool interrupted = false;
    QTimer timer;
    timer.callOnTimeout([&] {
        if (!filling || pane().topLevelItemCount() > 1) {
            timer.stop();
            interrupted = true;
            reset ? pane().Reset() : (void)pane().changeModel(dir_->at());
        }
    });
    timer.start(0);
    pane().changeModel(large_->path());
    if (!interrupted) {
        QSKIP("too quick to be overtaken here");
    }
    QVERIFY(window_->wait_idle());
    QSet<QString> paths;
    for (int i = 0; i < pane().topLevelItemCount(); ++i) {
        paths.insert(path_of(*pane().topLevelItem(i)));
    }
    QCOMPARE(paths.size(), reset ? many + 1 : 2);
    QCOMPARE(pane().topLevelItemCount(), paths.size());
    QVERIFY(reset || paths.contains(dir_->at(u"only.txt"_s)));
}

QTEST_MAIN(TestPane)
#include "test_pane.moc"
