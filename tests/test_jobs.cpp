// The pane's hash jobs on real files: what they hash, what they tell, and how they end.

#include "tests/pane_fixture.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>
#include <QTreeWidgetItemIterator>

using namespace Qt::StringLiterals;

namespace {

/// A pane without a main window: nothing takes note of a stop, and no comparison empties the list
/// of hashed rows.
class LonePane
{
  public:
    explicit LonePane(const QString& path) : tree(new MyTreeWidget(&box_))
    {
        for (QWidget* control : std::initializer_list<QWidget*>{
                 tree->drive_combo, tree->path_edit, tree->status_label, tree->progress,
                 tree->stop_button, tree->reset_button}) {
            control->setParent(&box_);
        }
        tree->changeModel(path);
    }

    bool wait() const { return WindowFixture::wait_idle(*tree, *tree); }

    /// Waits until the job reads this file.
    bool wait_for(const QString& path) const
    {
        return QTest::qWaitFor(
            [&] { return tree->status_label->text() == u"En cours : "_s + path; }, 60000);
    }

    /// Hashes what is selected, and waits for the end.
    bool hash(const QStringList& names) const
    {
        select_names(*tree, names);
        tree->HashThis();
        return wait();
    }

  private:
    QWidget box_;

  public:
    MyTreeWidget* tree; ///< owned by the box
};

QList<QTreeWidgetItem*> all_rows(MyTreeWidget& pane)
{
    QList<QTreeWidgetItem*> rows;
    for (QTreeWidgetItemIterator it(&pane); *it; ++it) {
        rows.append(*it);
    }
    return rows;
}

void call(MyTreeWidget& pane, const QByteArray& slot)
{
    QVERIFY(QMetaObject::invokeMethod(&pane, slot.constData()));
}

/// The end message with its time.
bool tells_end(const QString& text, const QString& beginning)
{
    static const QRegularExpression time(u"^ en \\d+\\.\\d\\ds$"_s);
    return text.startsWith(beginning) && time.match(text.sliced(beginning.size())).hasMatch();
}

} // namespace

using Mishap = void (*)(MyTreeWidget& pane);

class TestJobs : public QObject
{
    Q_OBJECT

  private slots:
    void init() { dir_ = std::make_unique<TestDir>(); }
    void cleanup();
    void hashed_files_data();
    void hashed_files();
    void walked_rows();
    void messages_come_in_order();
    void running_pane_refuses_changes();
    void stop_in_the_middle_data();
    void stop_in_the_middle();
    void stop_within_a_directory();
    void unread_files();
    void directory_links_end();
    void rows_die_during_a_job_data();
    void rows_die_during_a_job();
    void panes_share_the_pool();
    void pane_dies_during_its_job();

  private:
    /// Where a row stands below the directory of the test; of several, parted by ", ".
    QString place(const QTreeWidgetItem& row) const
    {
        return is_way_up(&row) ? name_of(row) : QDir(dir_->at()).relativeFilePath(path_of(row));
    }
    QString places(const QList<QTreeWidgetItem*>& rows) const;

    std::unique_ptr<TestDir> dir_;
    const int threads_ = QThreadPool::globalInstance()->maxThreadCount();
};

void TestJobs::cleanup()
{
    QVERIFY(QThreadPool::globalInstance()->waitForDone(60000));
    QThreadPool::globalInstance()->setMaxThreadCount(threads_);
    dir_.reset();
}

QString TestJobs::places(const QList<QTreeWidgetItem*>& rows) const
{
    QStringList all;
    for (const QTreeWidgetItem* row : rows) {
        all.append(place(*row));
    }
    return all.join(u", "_s);
}

void TestJobs::hashed_files_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<QString>("expanded");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QString>("hashed");
    const auto row = [](const char* title, const char* slot, const QString& expanded,
                        const QString& selected, const QString& hashed) {
        QTest::newRow(title) << QByteArray(slot) << expanded << selected << hashed;
    };
    row("all", "HashAll", {}, {}, u"empty, plain.txt"_s);
    row("directory, whatever is selected", "HashDir", u"a"_s, u"a"_s, u"empty, plain.txt"_s);
    row("no selection", "HashThis", {}, {}, {});
    row("way up", "HashThis", {}, u".."_s, {});
    row("excluded, but chosen", "HashThis", {}, u"big.TMP"_s, u"big.TMP"_s);
    row("never expanded", "HashThis", {}, u"a"_s, u"a/deep/in.txt, a/one.txt"_s);
    row("expanded", "HashThis", u"a"_s, u"a"_s, u"a/deep/in.txt, a/one.txt, a/skip.tmp"_s);
    row("expanded to the ground", "HashThis", u"a, a/deep"_s, u"a"_s,
        u"a/deep/in.TMP, a/deep/in.txt, a/one.txt, a/skip.tmp"_s);
    row("order of selection", "HashThis", {}, u"plain.txt, b, a"_s,
        u"plain.txt, b/two.txt, a/deep/in.txt, a/one.txt"_s);
    row("with its directory", "HashThis", u"a"_s, u"a/one.txt, a"_s,
        u"a/one.txt, a/deep/in.txt, a/skip.tmp"_s);
}

void TestJobs::hashed_files()
{
    QFETCH(QByteArray, slot);
    QFETCH(QString, expanded);
    QFETCH(QString, selected);
    QFETCH(QString, hashed);
    dir_->createFiles(words(u"a/deep/in.TMP, a/deep/in.txt, a/one.txt, a/skip.tmp, b/skip.tmp, "
                            "b/two.txt, plain.txt"_s));
    dir_->createFile(u"big.TMP"_s, QByteArray(700'000, 'b'));
    dir_->createFile(u"empty"_s);
    for (const auto algorithm : {QCryptographicHash::Md5, QCryptographicHash::Sha1}) {
        const LonePane pane(dir_->path());
        const bool sha1 = algorithm == QCryptographicHash::Sha1;
        pane.tree->changeHeaderSHA1(sha1);
        pane.tree->upper = sha1;
        pane.tree->set_exclus(u"*.tmp"_s);
        for (const QString& name : words(expanded)) {
            expand(*pane.tree, name);
        }
        select_names(*pane.tree, words(selected));
        call(*pane.tree, slot);
        QVERIFY(pane.tree->job_running());
        QVERIFY(pane.wait());

        QCOMPARE(places(pane.tree->job_items), hashed);
        for (const QTreeWidgetItem* row : all_rows(*pane.tree)) {
            const QString digest = reference_digest(dir_->read(place(*row)), algorithm);
            const QString shown = sha1 ? digest.toUpper() : digest;
            QCOMPARE(checksum_of(*row), words(hashed).contains(place(*row)) ? shown : QString());
        }
        const auto count = words(hashed).size();
        const QString end =
            count > 1 ? u"Fini. %1 fichiers traités"_s : u"Fini. %1 fichier traité"_s;
        QVERIFY(tells_end(pane.tree->status_label->text(), end.arg(count)));
        QVERIFY(pane.tree->selectedItems().isEmpty());
    }
}

void TestJobs::walked_rows()
{
    dir_->createFiles({u"sub/deep/a.txt"_s, u"sub/skip.tmp"_s, u"sub/b.txt"_s});
    dir_->createDir(u"sub/void"_s);
    QFile::link(dir_->at(u"sub/b.txt"_s), dir_->filePath(u"sub/link.tmp"_s));
    const LonePane pane(dir_->path());
    pane.tree->set_exclus(u"tmp"_s);
    QVERIFY(pane.hash({u"sub"_s}));
    QCOMPARE(places(all_rows(*pane.tree)),
             u".., sub, sub/deep, sub/deep/a.txt, sub/void, sub/b.txt"_s);
    for (const char* name : {"sub", "sub/deep", "sub/void"}) {
        const QTreeWidgetItem* row = find_row(*pane.tree, QString::fromLatin1(name));
        QVERIFY2(row->isExpanded(), name);
        QCOMPARE(row->childIndicatorPolicy(), QTreeWidgetItem::ShowIndicator);
        QVERIFY(!row->icon(ColName).isNull());
    }
    const QTreeWidgetItem* file = find_row(*pane.tree, u"sub/b.txt"_s);
    QCOMPARE(file->type(), int(TypeFile));
    QCOMPARE(file->text(ColSize), u"1 Ko"_s);
    QVERIFY(!file->icon(ColName).isNull());
    QCOMPARE(file->textAlignment(ColSize), 0);
    QCOMPARE(path_of(*file), dir_->at(u"sub/b.txt"_s));
}

void TestJobs::messages_come_in_order()
{
    dir_->createFile(u"a.txt"_s, "a");
    dir_->createFile(u"b.bin"_s, QByteArray(700'000, 'b'));
    dir_->createFile(u"empty"_s);
    const LonePane pane(dir_->path());
    MyTreeWidget& tree = *pane.tree;
    QStringList told;
    connect(&tree, &MyTreeWidget::processing, this, [&](const QString& text) { told += text; });
    connect(&tree, &MyTreeWidget::prog_bar, this,
            [&](int percent) { told += QString::number(percent); });
    connect(&tree, &MyTreeWidget::alldone, this, [&] {
        const bool free = tree.drive_combo->isEnabled() && tree.acceptDrops();
        told += free && tree.progress->value() == 0 ? u"free"_s : u"busy"_s;
    });
    connect(&tree, &MyTreeWidget::done, this, [&](const QString& text) {
        told += text.section(u" en "_s, 0, 0);
        QVERIFY(tree.job_running());
    });
    connect(&tree.job_watcher, &QFutureWatcherBase::finished, this,
            [&] { told += tree.job_running() ? u"running"_s : u"finished"_s; });
    tree.HashAll();
    QVERIFY(!tree.drive_combo->isEnabled() && !tree.acceptDrops());
    QTRY_COMPARE_WITH_TIMEOUT(told.value(told.size() - 1), u"finished"_s, 60000);
    QCOMPARE(told.join(u", "_s).remove(dir_->at()),
             u"En cours : /a.txt, 100, En cours : /b.bin, 37, 74, 100, En cours : /empty, free, "
             "Fini. 3 fichiers traités, finished"_s);
    QVERIFY(tells_end(tree.status_label->text(), u"Fini. 3 fichiers traités"_s));
    QCOMPARE(tree.progress->value(), 0);
}

void TestJobs::running_pane_refuses_changes()
{
    HUGE_FILE_OR_SKIP(*dir_, u"huge"_s);
    dir_->createFiles({u"sub/a.txt"_s, u"b.txt"_s});
    const LonePane pane(dir_->path());
    MyTreeWidget& tree = *pane.tree;
    QSignalSpy ends(&tree, &MyTreeWidget::alldone);
    tree.HashAll();
    QVERIFY(pane.wait_for(dir_->at(u"huge"_s)));
    QCOMPARE(places(tree.job_items), u"b.txt"_s);

    select_names(tree, {u"b.txt"_s});
    for (const char* slot :
         {"HashThis", "HashAll", "HashDir", "tampon_calculate_hash", "tampon_calculate_hashdir"}) {
        call(tree, slot);
    }
    tree.changeModel(dir_->at(u"sub"_s));
    activate(tree, u"sub"_s);
    activate(tree, u"b.txt"_s);
    QVERIFY(!drop_files(tree, {dir_->at(u"sub/a.txt"_s)}));
    expand(tree, u"sub"_s);
    QCOMPARE(places(tree.job_items), u"b.txt"_s);
    QCOMPARE(places(all_rows(tree)), u".., sub, b.txt, huge"_s);
    QCOMPARE(tree.current_dir().canonicalPath(), dir_->at());
    QVERIFY(!tree.drive_combo->isEnabled());

    tree.stop_button->click();
    QVERIFY(pane.wait());
    QCOMPARE(ends.count(), 1);
    QVERIFY(tree.drive_combo->isEnabled() && tree.acceptDrops());
    find_row(tree, u"sub"_s)->setExpanded(false);
    expand(tree, u"sub"_s);
    QCOMPARE(find_row(tree, u"sub"_s)->childCount(), 1);
}

void TestJobs::stop_in_the_middle_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<QString>("left");
    QTest::newRow("directory") << QByteArray("HashAll") << u"a.txt, huge"_s;
    QTest::newRow("selection") << QByteArray("HashThis") << QString();
}

void TestJobs::stop_in_the_middle()
{
    HUGE_FILE_OR_SKIP(*dir_, u"huge"_s);
    dir_->createFiles({u"a.txt"_s, u"last.txt"_s});
    const LonePane pane(dir_->path());
    MyTreeWidget& tree = *pane.tree;
    tree.stop_button->click();
    QVERIFY(!tree.stop_flagged()); // nothing ran

    QFETCH(QByteArray, slot);
    QSignalSpy done(&tree, &MyTreeWidget::done);
    QSignalSpy begun(&tree, &MyTreeWidget::processing);
    QSignalSpy ends(&tree, &MyTreeWidget::alldone);
    find_row(tree, u"huge"_s)->setText(ColHash, u"before"_s);
    select_names(tree, {u"a.txt"_s, u"huge"_s, u"last.txt"_s});
    call(tree, slot);
    QVERIFY(pane.wait_for(dir_->at(u"huge"_s)));
    tree.stop_button->click();
    QVERIFY(pane.wait());
    QCOMPARE(checksum_at(tree, u"a.txt"_s), reference_digest("a.txt"));
    QCOMPARE(checksum_at(tree, u"huge"_s), u"before"_s);
    QCOMPARE(checksum_at(tree, u"last.txt"_s), QString());
    QTEST(places(tree.job_items), "left");
    QCOMPARE(tree.status_label->text(), u"En cours : "_s + dir_->at(u"huge"_s));
    QCOMPARE(tree.progress->value(), 0);
    QCOMPARE(begun.count(), 2);
    QCOMPARE(ends.count(), 1);

    // Nobody took note of the stop: the next jobs hash nothing, and only a selection announces its
    // first file.
    tree.HashDir();
    QVERIFY(pane.wait());
    QCOMPARE(begun.count(), 2);
    QVERIFY(pane.hash({u"last.txt"_s, u"a.txt"_s}));
    QCOMPARE(begun.count(), 3);
    QCOMPARE(begun.last().first().toString(), u"En cours : "_s + dir_->at(u"last.txt"_s));
    QCOMPARE(checksum_at(tree, u"last.txt"_s), QString());
    QVERIFY(tree.job_items.isEmpty());
    QCOMPARE(ends.count(), 3);
    QCOMPARE(done.count(), 0);

    tree.clear_stop_flag();
    QVERIFY(pane.hash({u"last.txt"_s}));
    QCOMPARE(checksum_at(tree, u"last.txt"_s), reference_digest("last.txt"));
    QCOMPARE(done.count(), 1);
}

void TestJobs::stop_within_a_directory()
{
    HUGE_FILE_OR_SKIP(*dir_, u"sub/huge"_s);
    dir_->createFiles({u"sub/a.txt"_s, u"sub/last.txt"_s, u"top.txt"_s});
    const LonePane pane(dir_->path());
    select_names(*pane.tree, {u"sub"_s, u"top.txt"_s});
    pane.tree->HashThis();
    QVERIFY(pane.wait_for(dir_->at(u"sub/huge"_s)));
    pane.tree->stop_thread();
    QVERIFY(pane.wait());
    QCOMPARE(checksum_at(*pane.tree, u"sub/a.txt"_s), reference_digest("sub/a.txt"));
    QCOMPARE(checksum_at(*pane.tree, u"sub/huge"_s), QString());
    QVERIFY(!find_row(*pane.tree, u"sub/last.txt"_s));
    QCOMPARE(checksum_at(*pane.tree, u"top.txt"_s), QString());
    QVERIFY(pane.tree->job_items.isEmpty());
}

void TestJobs::unread_files()
{
    dir_->createFiles({u"good"_s, u"replaced"_s, u"turned"_s, u"vanished"_s});
    const bool secret = !make_unreadable(*dir_, u"secret"_s).isEmpty();
    const LonePane pane(dir_->path());
    QVERIFY(QFile::remove(dir_->at(u"vanished"_s)));
    QVERIFY(QFile::remove(dir_->at(u"turned"_s)));
    dir_->createDir(u"turned"_s);
    dir_->createFile(u"replaced"_s, "other content");
    QSignalSpy begun(pane.tree, &MyTreeWidget::processing);
    pane.tree->HashAll();
    QVERIFY(pane.wait());

    const QStringList unread =
        words(secret ? u"turned, vanished, secret"_s : u"turned, vanished"_s);
    for (const QString& name : unread) {
        QCOMPARE(checksum_at(*pane.tree, name),
                 u"Impossible d'ouvrir le fichier "_s + path_of(*find_row(*pane.tree, name)));
    }
    QCOMPARE(checksum_at(*pane.tree, u"good"_s), reference_digest("good"));
    QCOMPARE(checksum_at(*pane.tree, u"replaced"_s), reference_digest("other content"));
    QCOMPARE(begun.count(), 2);
    const auto count = unread.size() + 2;
    QCOMPARE(pane.tree->job_items.size(), count);
    QVERIFY(tells_end(pane.tree->status_label->text(), u"Fini. %1 fichiers traités"_s.arg(count)));
}

void TestJobs::directory_links_end()
{
    dir_->createFiles({u"loop/a.txt"_s, u"x/x.txt"_s, u"y/y.txt"_s});
    const QList<std::pair<QString, QString>> links = {
        {u"loop"_s, u"loop/back"_s}, {u"y"_s, u"x/to_y"_s}, {u"x"_s, u"y/to_x"_s}};
    for (const auto& [target, link] : links) {
        if (!QFile::link(dir_->at(target), dir_->filePath(link)) ||
            !QFileInfo(dir_->filePath(link)).isDir()) {
            QSKIP("no directory links here");
        }
    }
    const LonePane pane(dir_->path());
    QVERIFY(pane.hash({u"loop"_s, u"x"_s}));
    QCOMPARE(places(pane.tree->job_items), u"loop/a.txt, y/y.txt, x/x.txt"_s);
    QVERIFY(find_row(*pane.tree, u"loop/back"_s));

    // The same with the loop expanded by hand.
    pane.tree->Reset();
    expand(*pane.tree, u"loop"_s);
    expand(*pane.tree, u"loop/back"_s);
    QVERIFY(pane.hash({u"loop"_s}));
    QCOMPARE(places(pane.tree->job_items), u"loop/a.txt, loop/a.txt, loop/a.txt"_s);
}

void TestJobs::rows_die_during_a_job_data()
{
    QTest::addColumn<bool>("walk");
    QTest::addColumn<Mishap>("mishap");
    QTest::addColumn<QString>("hashed");
    const auto row = [](const char* title, bool walk, Mishap mishap, const QString& hashed) {
        QTest::newRow(title) << walk << mishap << hashed;
    };
    const Mishap reset = [](MyTreeWidget& pane) { pane.Reset(); };
    row("reset", false, reset, {});
    row("update", false, [](MyTreeWidget& pane) { pane.update_view(u"b"_s); }, {});
    row(
        "row removed", false, [](MyTreeWidget& pane) { delete find_row(pane, u"b"_s); }, u"a, c"_s);
    row(
        "earlier row removed", false, [](MyTreeWidget& pane) { delete find_row(pane, u"a"_s); },
        u"b, c"_s);
    row("reset of a walk", true, reset, {});
    row("directory of a walk removed", true,
        [](MyTreeWidget& pane) { delete find_row(pane, u"sub"_s); }, {});
    row(
        "subdirectory of a walk removed", true,
        [](MyTreeWidget& pane) { delete find_row(pane, u"sub/deep"_s); }, u"sub/a, sub/b, sub/c"_s);
}

void TestJobs::rows_die_during_a_job()
{
    QFETCH(bool, walk);
    QFETCH(Mishap, mishap);
    QFETCH(QString, hashed);
    dir_->createFiles(words(u"a, b, c, sub/a, sub/b, sub/c, sub/deep/d, sub/deep/e"_s));
    const LonePane pane(dir_->path());
    MyTreeWidget& tree = *pane.tree;
    QSignalSpy ends(&tree, &MyTreeWidget::alldone);
    // What a job tells arrives in order: here the file is announced and its digest yet to come.
    const QString moment = u"En cours : "_s + dir_->at(walk ? u"sub/deep/e"_s : u"b"_s);
    connect(&tree, &MyTreeWidget::processing, this, [&](const QString& text) {
        if (text == moment) {
            mishap(tree);
        }
    });
    select_names(tree, {u"sub"_s});
    walk ? tree.HashThis() : tree.HashAll();
    QVERIFY(pane.wait());
    QCOMPARE(ends.count(), 1);

    const QList<QTreeWidgetItem*> alive = all_rows(tree);
    for (QTreeWidgetItem* row : tree.job_items) {
        QVERIFY(alive.contains(row));
    }
    QCOMPARE(places(tree.job_items), hashed);
    for (const QTreeWidgetItem* row : alive) {
        const bool is_hashed = words(hashed).contains(place(*row));
        QCOMPARE(checksum_of(*row), is_hashed ? reference_digest(place(*row).toUtf8()) : QString());
    }
    disconnect(&tree, &MyTreeWidget::processing, this, nullptr);
    tree.Reset();
    tree.HashAll();
    QVERIFY(pane.wait());
    QCOMPARE(places(tree.job_items), u"a, b, c"_s);
}

void TestJobs::panes_share_the_pool()
{
    QThreadPool::globalInstance()->setMaxThreadCount(1);
    for (int i = 0; i < 50; ++i) {
        dir_->createFile(u"small/%1"_s.arg(i), QByteArray::number(i));
    }
    HUGE_FILE_OR_SKIP(*dir_, u"large/huge"_s);
    const LonePane busy(dir_->at(u"large"_s));
    busy.tree->HashAll();
    QVERIFY(busy.wait_for(dir_->at(u"large/huge"_s)));
    const LonePane other(dir_->at(u"small"_s));
    other.tree->HashAll();
    QVERIFY(other.wait()); // although the first one is not done
    QVERIFY(busy.tree->job_running());
    QCOMPARE(other.tree->job_items.size(), 50);
    QCOMPARE(checksum_at(*other.tree, u"49"_s), reference_digest("49"));
    busy.tree->stop_thread();
    QVERIFY(busy.wait());
}

void TestJobs::pane_dies_during_its_job()
{
    HUGE_FILE_OR_SKIP(*dir_, u"sub/huge"_s);
    {
        const LonePane pane(dir_->path());
        select_names(*pane.tree, {u"sub"_s});
        pane.tree->HashThis();
        QVERIFY(pane.wait_for(dir_->at(u"sub/huge"_s)));
    }
    WindowFixture fixture;
    for (MyTreeWidget* pane : {fixture.first, fixture.second}) {
        pane->changeModel(dir_->at(u"sub"_s));
        pane->HashAll();
    }
    QTRY_COMPARE_WITH_TIMEOUT(fixture.first->status_label->text(),
                              u"En cours : "_s + dir_->at(u"sub/huge"_s), 60000);
    fixture.window.reset();
    // The end of the test waits for the pool: both jobs must have taken note.
    QCoreApplication::processEvents();
}

QTEST_MAIN(TestJobs)
#include "test_jobs.moc"
