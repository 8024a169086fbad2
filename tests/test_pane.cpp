// A pane without jobs: what it consists of, its rows, and its way through the file system.

#include "platform/volumes.h"
#include "tests/pane_fixture.h"
#include "tree/size_text.h"

#include <QApplication>
#include <QDir>
#include <QScrollBar>
#include <QStatusBar>
#include <QStorageInfo>
#include <QTest>
#include <QThread>
#include <QTimer>

using namespace Qt::StringLiterals;
using engine::Mark;

namespace {

// Wine, which has to tell a name from all others whatever their case, takes minutes for more.
const int many = QSysInfo::productType() == "windows"_L1 ? 4'000 : 20'000;

QStringList names(const MyTreeWidget& pane)
{
    QStringList found;
    for (int i = 0; i < pane.topLevelItemCount(); ++i) {
        found.append(pane.topLevelItem(i)->text(ColName));
    }
    return found;
}

/// Type, "+" for an expander, name, size, alignments of size and checksum.
QString describe(const QTreeWidgetItem& row)
{
    const bool expander = row.childIndicatorPolicy() == QTreeWidgetItem::ShowIndicator;
    return u"%1%2 %3 [%4] %5 %6"_s.arg(row.type())
        .arg(expander ? u"+"_s : QString(), name_of(row), row.text(ColSize))
        .arg(row.textAlignment(ColSize))
        .arg(row.textAlignment(ColHash));
}

QStringList describe_children(const QTreeWidgetItem& parent)
{
    QStringList rows;
    for (int i = 0; i < parent.childCount(); ++i) {
        rows.append(describe(*parent.child(i)));
    }
    return rows;
}

/// Makes adding rows as slow as it would be on a small machine.
void slow_down(const MyTreeWidget& pane)
{
    QObject::connect(pane.model(), &QAbstractItemModel::rowsInserted, [] { QThread::msleep(45); });
}

void set_mark(QTreeWidgetItem* row, Mark mark)
{
    static_cast<PaneRow*>(row)->set_mark(mark);
}

} // namespace

using Interruption = void (*)(MyTreeWidget& pane, const QString& elsewhere);
Q_DECLARE_METATYPE(Interruption)

class TestPane : public QObject
{
    Q_OBJECT

  private slots:
    void initTestCase();
    void init();
    void cleanup();
    void size_texts_data();
    void size_texts();
    void construction();
    void methods_are_found_by_name();
    void header_follows_the_algorithm();
    void listed_rows();
    void directories_are_listed_when_expanded();
    void names_survive_data();
    void names_survive();
    void path_line_falls_back_data();
    void path_line_falls_back();
    void selector_opens_a_drive();
    void activated_rows();
    void activated_checksum_files_data();
    void activated_checksum_files();
    void reset_keeps_the_scroll_position();
    void update_view_finds_the_row_again_data();
    void update_view_finds_the_row_again();
    void update_view_ends_a_list_of_dropped_files();
    void directories_without_content();
    void large_listing_leaves_the_window_alive();
    void overtaken_listing_leaves_no_row_data();
    void overtaken_listing_leaves_no_row();
    void marks_are_cleared_on_leaves();
    void top_level_is_unselected();

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

void TestPane::size_texts_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("text");
    const QList<std::pair<qint64, QString>> rows = {
        {0, u"1 Ko"_s},
        {999, u"1 Ko"_s},
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
        QTest::addRow("%lld", static_cast<long long>(bytes)) << bytes << text;
    }
}

void TestPane::size_texts()
{
    QFETCH(qint64, bytes);
    QTEST(format_size(bytes), "text");
}

void TestPane::construction()
{
    const QTreeWidgetItem* header = pane().headerItem();
    const QStringList texts = {header->text(ColName), header->text(ColSize), header->text(ColPath),
                               header->text(ColHash)};
    QCOMPARE(texts, (QStringList{u"Nom"_s, u"Taille"_s, QString(), u"MD5"_s}));
    QCOMPARE(pane().columnCount(), int(ColumnCount));
    QCOMPARE(pane().columnWidth(ColName), 250);
    QCOMPARE(pane().columnWidth(ColSize), 75);
    QCOMPARE(pane().columnWidth(ColHash), 250);
    QVERIFY(pane().isColumnHidden(ColPath));
    QCOMPARE(pane().selectionMode(), QAbstractItemView::ExtendedSelection);
    QCOMPARE(pane().selectionBehavior(), QAbstractItemView::SelectRows);
    QVERIFY(pane().acceptDrops());
    QCOMPARE(pane().algorithm(), QCryptographicHash::Md5);

    QVERIFY(pane().drive_combo->count() > 0);
    QCOMPARE(platform::root_of_entry(pane().drive_combo->itemText(0)), QDir::rootPath());
    QVERIFY(!pane().drive_combo->itemIcon(0).isNull());
    QCOMPARE(pane().path_edit->textMargins(), QMargins(5, 0, 0, 2));
    QCOMPARE(pane().status_label->maximumWidth(), 600);
    QCOMPARE(pane().progress->baseSize(), QSize(300, 50));
    for (const QPushButton* button : {pane().stop_button, pane().reset_button}) {
        QVERIFY(button->text().isEmpty());
        QVERIFY(!button->toolTip().isEmpty() && !button->accessibleName().isEmpty());
        QVERIFY(!button->icon().pixmap(16).isNull());
        QCOMPARE(button->maximumWidth(), 30);
    }
}

void TestPane::methods_are_found_by_name()
{
    const QMetaObject& meta = MyTreeWidget::staticMetaObject;
    QCOMPARE(own_methods(meta, QMetaMethod::Signal),
             u"alldone() done(QString) processing(QString) prog_bar(int) "
             "concurrent_compare(QList<QTreeWidgetItem*>) checksum_hash_done_send(QString) "
             "tampon(QTreeWidgetItem*) expand_parent(QTreeWidgetItem*) "
             "icon_req(QTreeWidgetItem*,QFileInfo)"_s);
    for (const char* signature : {"showDir(QTreeWidgetItem*,int)",
                                  "changeModel(QString)",
                                  "Reset()",
                                  "update_view(QString)",
                                  "PopulateDir(QTreeWidgetItem*)",
                                  "expand_tree(QTreeWidgetItem*)",
                                  "aff_icon(QTreeWidgetItem*,QFileInfo)",
                                  "retrieve_path_lineedit()",
                                  "set_path_lineedit()",
                                  "set_exclus(QString)",
                                  "cc()",
                                  "ccAll()",
                                  "setopt(bool,bool,bool,bool,bool,bool)",
                                  "scrollitem(QTreeWidgetItem*,int)",
                                  "set_AutoScroll(bool)",
                                  "open_explorer()",
                                  "handle_args(QStringList&)",
                                  "HashThis()",
                                  "HashAll()",
                                  "HashDir()",
                                  "stop_thread()",
                                  "done_single()",
                                  "PopulateList(QTreeWidgetItem*)",
                                  "tampon_calculate_hash()",
                                  "tampon_calculate_hashdir()",
                                  "cc_file()",
                                  "cc_all_file()",
                                  "compute_compare(QTreeWidgetItem*)",
                                  "compute_compare2()",
                                  "checksum()",
                                  "checksum_hash()",
                                  "checksum_hash_done()",
                                  "changeHeaderMD5(bool)",
                                  "changeHeaderSHA1(bool)",
                                  "reactivate_all()"}) {
        QVERIFY2(meta.indexOfSlot(signature) >= meta.methodOffset(), signature);
    }
    MyTreeWidget* answer = nullptr;
    QVERIFY(QMetaObject::invokeMethod(&pane(), "changeModel", Q_RETURN_ARG(MyTreeWidget*, answer),
                                      Q_ARG(QString, dir_->path())));
    QCOMPARE(answer, &pane());
    QCOMPARE(pane().current_dir().canonicalPath(), dir_->at());
}

void TestPane::header_follows_the_algorithm()
{
    dir_->createFile(u"a.txt"_s, "a");
    pane().changeModel(dir_->path());
    find_row(pane(), u"a.txt"_s)->setText(ColHash, u"shown"_s);
    const auto switch_to = [&](const QString& text, QCryptographicHash::Algorithm algorithm) {
        window_->radio(text)->click();
        for (const MyTreeWidget* each : {window_->first, window_->second}) {
            QCOMPARE(each->headerItem()->text(ColHash), text);
            QCOMPARE(each->algorithm(), algorithm);
        }
    };
    switch_to(u"SHA1"_s, QCryptographicHash::Sha1);
    switch_to(u"MD5"_s, QCryptographicHash::Md5);
    pane().changeHeaderSHA1(false);
    QCOMPARE(pane().algorithm(), QCryptographicHash::Md5);
    QCOMPARE(checksum_at(pane(), u"a.txt"_s), u"shown"_s);
}

void TestPane::listed_rows()
{
    dir_->createFile(u"zz/file"_s);
    dir_->createDir(u"below"_s);
    dir_->createFile(u"b.txt"_s, QByteArray(1536, 'b'));
    dir_->createFile(u"a.txt"_s);
    dir_->createFile(u".hidden"_s);
    pane().changeModel(dir_->path() + u"/below/.."_s);

    const QStringList expected = {u"1001 .. [] 0 0"_s, u"1001+ below [] 0 0"_s,
                                  u"1001+ zz [] 0 0"_s, u"1002 a.txt [1 Ko] 130 128"_s,
                                  u"1002 b.txt [2 Ko] 130 128"_s};
    QCOMPARE(describe_children(*pane().invisibleRootItem()), expected);
    const QString up = QFileInfo(dir_->at()).path();
    const QStringList paths = {up, dir_->at(u"below"_s), dir_->at(u"zz"_s), dir_->at(u"a.txt"_s),
                               dir_->at(u"b.txt"_s)};
    for (int i = 0; i < pane().topLevelItemCount(); ++i) {
        QCOMPARE(path_of(*pane().topLevelItem(i)), paths[i]);
        QVERIFY(!pane().topLevelItem(i)->icon(ColName).isNull());
    }
}

void TestPane::directories_are_listed_when_expanded()
{
    dir_->createFile(u"sub/b.txt"_s, "b");
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
    QCOMPARE(describe(*empty), u"1001+ void [] 0 0"_s);
}

void TestPane::names_survive_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << u"  a   b .t t"_s;
    QTest::newRow("quotes") << u"it's \"so\" `or`"_s;
    QTest::newRow("accents") << u"Été à Nœuf"_s;
    QTest::newRow("combining accent") << u"e\u0301te\u0301"_s;
    QTest::newRow("emoji") << u"\U0001F600\U0001F468\u200D\U0001F469"_s;
    QTest::newRow("markup and places") << u"<b>&amp;%1 %n"_s;
    QTest::newRow("255 bytes") << QString(255, u'n');
    QTest::newRow("255 bytes in 128 letters") << QString(127, u'é') + u'e';
}

void TestPane::names_survive()
{
    QFETCH(QString, name);
    if (!QDir(dir_->path()).mkdir(name)) {
        QSKIP("no such names here");
    }
    dir_->createFile(name + u'/' + name, "content");
    pane().changeModel(dir_->path());
    QVERIFY(find_row(pane(), name));
    type_path(QDir::toNativeSeparators(dir_->at(name)));
    QCOMPARE(pane().status_label->text(), dir_->at(name));
    QCOMPARE(names(pane()), (QStringList{u".."_s, name}));
    QCOMPARE(path_of(*pane().topLevelItem(1)), dir_->at(name + u'/' + name));
    pane().HashAll();
    QVERIFY(window_->wait_idle());
    QCOMPARE(checksum_at(pane(), name), reference_digest("content"));
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
    dir_->createDir(u"sub"_s);
    dir_->createFile(u"file.txt"_s);
    for (QString* text : {&typed, &shown}) {
        text->replace(u"{dir}"_s, dir_->at());
        text->replace(u"{working}"_s, window_->working_dir.at());
        text->replace(u"{volume}"_s, QStorageInfo(dir_->path()).rootPath());
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

void TestPane::selector_opens_a_drive()
{
    pane().changeModel(dir_->path());
    emit pane().drive_combo->textActivated(pane().drive_combo->itemText(0));
    QCOMPARE(pane().current_dir().path(), QDir::rootPath());
    QCOMPARE(pane().drive_combo->currentIndex(), 0);
}

void TestPane::activated_rows()
{
    dir_->createFile(u"sub/a.txt"_s, "a");
    pane().changeModel(dir_->path());
    const auto activate = [&](const QString& name) {
        QTreeWidgetItem* row = find_row(pane(), name);
        row->setSelected(true);
        emit pane().itemActivated(row, 0);
    };
    activate(u"sub"_s);
    QCOMPARE(names(pane()), (QStringList{u".."_s, u"a.txt"_s}));
    QCOMPARE(pane().status_label->text(), dir_->at(u"sub"_s));
    QCOMPARE(pane().path_edit->text(), QDir::toNativeSeparators(dir_->at(u"sub"_s)));
    activate(u"a.txt"_s);
    QVERIFY(window_->wait_idle());
    QCOMPARE(checksum_at(pane(), u"a.txt"_s), reference_digest("a"));
    activate(u".."_s);
    QCOMPARE(names(pane()), (QStringList{u".."_s, u"sub"_s}));
    QCOMPARE(pane().path_edit->text(), QDir::toNativeSeparators(dir_->at()));
}

void TestPane::activated_checksum_files_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("verified");
    QTest::newRow("md5") << u"a.md5"_s << true;
    QTest::newRow("capitals") << u"a.SHA1"_s << true;
    QTest::newRow("anywhere in the suffix") << u"a.md5bak"_s << true;
    QTest::newRow("end of the suffix") << u"a.xsha1"_s << true;
    QTest::newRow("not in the name") << u"md5.txt"_s << false;
}

void TestPane::activated_checksum_files()
{
    QFETCH(QString, name);
    dir_->createFile(name);
    pane().changeModel(dir_->path());
    bool reported = false; // that there is nothing to verify
    QTimer closer;
    closer.callOnTimeout([&] {
        if (QWidget* box = QApplication::activeModalWidget()) {
            reported = true;
            box->close();
        }
    });
    closer.start(10);
    find_row(pane(), name)->setSelected(true);
    emit pane().itemActivated(find_row(pane(), name), 0);
    QVERIFY(window_->wait_idle());
    QTEST(reported, "verified");
    QCOMPARE(checksum_at(pane(), name), reported ? QString() : reference_digest(""));
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
    find_row(pane(), u"file 7"_s)->setSelected(true);
    QTRY_VERIFY(pane().verticalScrollBar()->maximum() > 100);
    pane().verticalScrollBar()->setValue(50);
    dir_->createFile(u"zz"_s);

    pane().reset_button->click();
    QCOMPARE(pane().verticalScrollBar()->value(), 50);
    QCOMPARE(pane().topLevelItemCount(), 203);
    QCOMPARE(find_row(pane(), u"sub"_s)->childCount(), 0);
    QCOMPARE(checksum_at(pane(), u"file 7"_s), QString());
    QVERIFY(pane().selectedItems().isEmpty());
    pane().changeModel(dir_->path());
    QCOMPARE(pane().verticalScrollBar()->value(), 0);
}

void TestPane::update_view_finds_the_row_again_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("selected");
    QTest::newRow("named") << u"new.txt"_s << QStringList{u"new.txt"_s};
    QTest::newRow("current row") << QString() << QStringList{u"old.txt"_s};
    QTest::newRow("not there") << u"none.txt"_s << QStringList();
}

void TestPane::update_view_finds_the_row_again()
{
    dir_->createFile(u"old.txt"_s);
    pane().changeModel(dir_->path());
    pane().setCurrentItem(find_row(pane(), u"old.txt"_s));
    dir_->createFile(u"new.txt"_s);
    QFETCH(QString, name);
    pane().update_view(name);
    QCOMPARE(names(pane()), (QStringList{u".."_s, u"new.txt"_s, u"old.txt"_s}));
    QCOMPARE(window_->window->statusBar()->currentMessage(), name);
    QStringList selected;
    for (const QTreeWidgetItem* row : pane().selectedItems()) {
        selected.append(name_of(*row));
    }
    QTEST(selected, "selected");
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
    QCOMPARE(names(pane()), (QStringList{u".."_s, u"sub"_s, u"top.txt"_s}));
}

void TestPane::directories_without_content()
{
    dir_->createDir(u"empty/gone"_s);
    pane().changeModel(dir_->at(u"empty"_s));
    QVERIFY(QDir(dir_->at(u"empty/gone"_s)).removeRecursively());
    expand(pane(), u"gone"_s);
    QCOMPARE(find_row(pane(), u"gone"_s)->childCount(), 0);
    pane().Reset();
    QCOMPARE(names(pane()), QStringList{u".."_s});

    QVERIFY(QDir(dir_->at(u"empty"_s)).removeRecursively());
    pane().Reset();
    QCOMPARE(pane().topLevelItemCount(), 0);
    pane().HashAll();
    QVERIFY(window_->wait_idle());
    QVERIFY(pane().status_label->text().startsWith(u"Fini. 0 fichier traité en "_s));
    pane().changeModel(dir_->filePath(u"empty"_s));
    QCOMPARE(pane().current_dir().path(), QStorageInfo(dir_->path()).rootPath());
}

void TestPane::large_listing_leaves_the_window_alive()
{
    int ticks = 0;
    QTimer timer;
    timer.callOnTimeout([&] { ++ticks; });
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
    QTest::addColumn<Interruption>("interrupt");
    QTest::addColumn<int>("rows");
    const QList<std::tuple<QByteArray, Interruption, int>> ways = {
        {"another directory", [](MyTreeWidget& pane, const QString& to) { pane.changeModel(to); },
         2},
        {"reset", [](MyTreeWidget& pane, const QString&) { pane.Reset(); }, many + 1},
    };
    for (const auto& [title, interrupt, rows] : ways) {
        QTest::newRow(("while reading: " + title).constData()) << false << interrupt << rows;
        QTest::newRow(("while filling: " + title).constData()) << true << interrupt << rows;
    }
}

void TestPane::overtaken_listing_leaves_no_row()
{
    QFETCH(bool, filling);
    QFETCH(Interruption, interrupt);
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
            interrupt(pane(), dir_->at());
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
    QTEST(int(paths.size()), "rows");
    QTEST(pane().topLevelItemCount(), "rows");
    QVERIFY(paths.size() > 2 || paths.contains(dir_->at(u"only.txt"_s)));
}

void TestPane::marks_are_cleared_on_leaves()
{
    dir_->createFiles({u"sub/deep/a.txt"_s, u"sub/b.txt"_s, u"c.txt"_s, u"unhashed.txt"_s});
    pane().changeModel(dir_->path());
    expand(pane(), u"sub"_s);
    expand(pane(), u"sub/deep"_s);
    const QStringList hashed = {u"sub"_s, u"sub/deep"_s, u"sub/deep/a.txt"_s, u"sub/b.txt"_s,
                                u"c.txt"_s};
    for (const QString& name : hashed) {
        find_row(pane(), name)->setText(ColHash, u"x"_s);
        set_mark(find_row(pane(), name), Mark::Different);
    }
    set_mark(find_row(pane(), u"unhashed.txt"_s), Mark::Identical);
    pane().reset_marks();
    QStringList marks;
    for (const QString& name : hashed) {
        marks.append(mark_at(pane(), name) + u' ' + checksum_at(pane(), name));
    }
    const QStringList expected = {u"red x"_s, u"red x"_s, u"white "_s, u"white "_s, u"white "_s};
    QCOMPARE(marks, expected);
    QCOMPARE(mark_at(pane(), u"unhashed.txt"_s), u"green"_s);
}

void TestPane::top_level_is_unselected()
{
    dir_->createFiles({u"sub/a.txt"_s, u"b.txt"_s, u"c.txt"_s});
    pane().changeModel(dir_->path());
    expand(pane(), u"sub"_s);
    select_names(pane(), {u".."_s, u"sub"_s, u"sub/a.txt"_s, u"c.txt"_s});
    pane().deselect_top_level();
    QCOMPARE(pane().selectedItems(), QList{find_row(pane(), u"sub/a.txt"_s)});
    pane().clear();
    pane().deselect_top_level();
    QVERIFY(pane().selectedItems().isEmpty());
}

QTEST_MAIN(TestPane)
#include "test_pane.moc"
