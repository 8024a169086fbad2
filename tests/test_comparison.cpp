// The main window: its actions, what a run enables and disables, and what a comparison marks.

#include "dialogs/fenres.h"
#include "tests/pane_fixture.h"

#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QTreeWidgetItemIterator>
#include <QWidgetAction>

using namespace Qt::StringLiterals;
using engine::Mark;

namespace {

/// The entries of a menu or tool bar, parted by ", ": texts, "-" for a separator, "=" for the
/// spacer.
QString entries(const QWidget& bar)
{
    QStringList texts;
    for (QAction* action : bar.actions()) {
        const auto* control = qobject_cast<QWidgetAction*>(action);
        const auto* radio =
            control ? qobject_cast<QRadioButton*>(control->defaultWidget()) : nullptr;
        texts.append(radio                   ? radio->text()
                     : control               ? u"="_s
                     : action->isSeparator() ? u"-"_s
                                             : action->text());
    }
    return texts.join(u", "_s);
}

/// All rows with a mark or a checksum, as "path mark", parted by commas.
QString marks(MyTreeWidget& pane)
{
    QStringList found;
    for (QTreeWidgetItemIterator it(&pane); *it; ++it) {
        QString name = name_of(**it);
        for (const QTreeWidgetItem* up = (*it)->parent(); up; up = up->parent()) {
            name.prepend(name_of(*up) + u'/');
        }
        const QString mark = mark_at(pane, name);
        if (!mark.isEmpty() || !checksum_of(**it).isEmpty()) {
            found.append(name + u' ' + mark);
        }
    }
    return found.join(u", "_s);
}

/// Lays out files given as "name=content", parted by ", ".
void lay_out(TestDir& dir, const QString& files)
{
    for (const QString& file : words(files)) {
        dir.createFile(file.section(u'=', 0, 0), file.section(u'=', 1).toUtf8());
    }
}

} // namespace

class TestComparison : public QObject
{
    Q_OBJECT

  private slots:
    void init();
    void cleanup();
    void actions();
    void menus_and_tool_bar();
    void methods_are_found_by_name();
    void splitter_orientation();
    void compare_all_marks_data();
    void compare_all_marks();
    void compare_marks_selections();
    void same_directory_and_empty_ones();
    void single_pane_job_marks();
    void time_is_told_once();
    void controls_are_disabled_for_a_run();
    void one_trigger_is_one_run();
    void trigger_while_listing_is_one_run();
    void each_call_takes_note_of_one_stop();
    void marks_are_readable();

  private:
    void show_both() const;
    QString enabled() const;
    QList<FenRes*> dialogs() const { return window_->window->findChildren<FenRes*>(); }
    QString message() const { return window_->window->statusBar()->currentMessage(); }

    std::unique_ptr<TestDir> left_;
    std::unique_ptr<TestDir> right_;
    std::unique_ptr<WindowFixture> window_;
};

void TestComparison::init()
{
    left_ = std::make_unique<TestDir>();
    right_ = std::make_unique<TestDir>();
    window_ = std::make_unique<WindowFixture>();
}

void TestComparison::cleanup()
{
    window_.reset();
    left_.reset();
    right_.reset();
}

void TestComparison::show_both() const
{
    window_->first->changeModel(left_->path());
    window_->second->changeModel(right_->path());
}

/// A digit for each control that a run disables, then "|" and one for each that it does not.
QString TestComparison::enabled() const
{
    const auto digit = [&](const QString& action) {
        return QString::number(window_->action(action)->isEnabled());
    };
    return digit(u"Comparer"_s) + digit(u"Comparer Tout"_s) + digit(u"Réinitialiser"_s) +
           QString::number(window_->radio(u"MD5"_s)->isEnabled()) +
           QString::number(window_->radio(u"SHA1"_s)->isEnabled()) + u'|' + digit(u"Stop"_s) +
           digit(u"Copier le resultat"_s) + digit(u"Options..."_s);
}

void TestComparison::actions()
{
    const QKeySequence none;
    const QList<std::tuple<QString, QKeySequence, QString, bool>> expected = {
        {u"Quitter"_s, u"Ctrl+Q"_s, {}, true},
        {u"Comparer"_s, u"Ctrl+F"_s, u"Compare les éléments sélectionnés."_s, false},
        {u"Comparer Tout"_s, u"Ctrl+Shift+F"_s, u"Compare tous les éléments."_s, false},
        {u"A Propos..."_s, none, {}, false},
        {u"Copier le resultat"_s, QKeySequence::Copy, u"Copie le résultat dans le Presse Papier"_s,
         false},
        {u"Copier tous les résultats"_s, u"Ctrl+Shift+C"_s,
         u"Copie tous les résultat dans le Presse Papier"_s, false},
        {u"Options..."_s, none, {}, false},
        {u"Stop"_s, none, {}, true},
        {u"Réinitialiser"_s, QKeySequence::Refresh, u"Réinitialiser les vues."_s, true},
        {u"Vues Horizontales."_s, u"F2"_s, u"Vues Horizontales."_s, true},
        {u"Vues Verticales."_s, u"F3"_s, u"Vues Verticales."_s, true}};
    const auto all = window_->window->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(all.size(), expected.size());
    for (qsizetype i = 0; i < all.size(); ++i) {
        const auto& [text, shortcut, tip, icon] = expected[i];
        QCOMPARE(all[i]->text(), text);
        QCOMPARE(all[i]->shortcut(), shortcut);
        QCOMPARE(all[i]->statusTip(), tip);
        QCOMPARE(!all[i]->icon().pixmap(16).isNull(), icon);
        QVERIFY(!all[i]->isCheckable());
    }
}

void TestComparison::menus_and_tool_bar()
{
    QStringList menus;
    for (const QAction* menu : window_->window->menuBar()->actions()) {
        menus.append(menu->text() + u": "_s + entries(*menu->menu()));
    }
    const QStringList expected = {
        u"&Fichier: Comparer, Comparer Tout, -, Quitter"_s,
        u"&Edition: Copier le resultat, Copier tous les résultats, -, Options..."_s,
        u"Fe&nêtre: Vues Horizontales., Vues Verticales."_s, u"?: A Propos..."_s};
    QCOMPARE(menus, expected);
    const auto bars = window_->window->findChildren<QToolBar*>();
    QCOMPARE(bars.size(), 1);
    QCOMPARE(bars[0]->windowTitle(), u"Main"_s);
    QCOMPARE(entries(*bars[0]),
             u"MD5, SHA1, -, Comparer, -, Comparer Tout, -, Stop, -, Réinitialiser, =, -, "
             "Vues Horizontales., Vues Verticales."_s);
    QCOMPARE(window_->window->windowTitle(), u"Tavrel"_s);
}

void TestComparison::methods_are_found_by_name()
{
    const QMetaObject& meta = MainFen::staticMetaObject;
    QCOMPARE(own_methods(meta, QMetaMethod::Signal), u"alldone() send_args(QStringList&)"_s);
    QCOMPARE(own_methods(meta, QMetaMethod::Slot),
             u"disableAll() compare() reactiveAll() results() setMD5() setSHA1() Apropos() "
             "writeSettings() setLang(QString) compare_against(QList<QTreeWidgetItem*>) "
             "add_exclus() rem_exclus() createOptions() reinitialiser() reinitialiser_lancer() "
             "setSplitOrientHoriz() setSplitOrientVerti()"_s);
}

void TestComparison::splitter_orientation()
{
    const auto* splitter = qobject_cast<QSplitter*>(window_->window->centralWidget());
    window_->window->show();
    window_->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window_->window.get()));
    for (const Qt::Key key : {Qt::Key_F2, Qt::Key_F3, Qt::Key_F3, Qt::Key_F2}) {
        QTest::keyClick(window_->window.get(), key);
        const bool stacked = key == Qt::Key_F3;
        QCOMPARE(splitter->orientation(), stacked ? Qt::Vertical : Qt::Horizontal);
        QCOMPARE(window_->action(u"Vues Horizontales."_s)->isEnabled(), stacked);
        QCOMPARE(window_->action(u"Vues Verticales."_s)->isEnabled(), !stacked);
    }
}

void TestComparison::compare_all_marks_data()
{
    QTest::addColumn<bool>("sha1");
    QTest::newRow("MD5") << false;
    QTest::newRow("SHA1") << true;
}

void TestComparison::compare_all_marks()
{
    QFETCH(bool, sha1);
    window_->radio(sha1 ? u"SHA1"_s : u"MD5"_s)->click();
    lay_out(*left_, u"changed=1, empty=, emptied=1, left=1, aname=1, same=1, skip.tmp=1, "
                    "sub/same=1"_s);
    lay_out(*right_, u"changed=2, empty=, emptied=, Aname=1, right=1, same=1, skip.tmp=2, "
                     "sub/same=2"_s);
    const bool unreadable = !make_unreadable(*left_, u"zsecret"_s).isEmpty();
    if (unreadable) {
        lay_out(*right_, u"zsecret=1"_s);
    }
    for (MyTreeWidget* pane : {window_->first, window_->second}) {
        pane->set_exclus(u"tmp"_s);
    }
    window_->second->upper = true; // the case of checksums does not count
    show_both();
    QVERIFY(window_->compare_all());
    const QString secret = unreadable ? u", zsecret red"_s : QString();
    const QString common = u"changed red, emptied red, empty green, "_s;
    QCOMPARE(marks(*window_->first),
             u"aname yellow, "_s + common + u"left yellow, same green"_s + secret);
    QCOMPARE(marks(*window_->second),
             u"Aname yellow, "_s + common + u"right yellow, same green"_s + secret);
    QCOMPARE(checksum_at(*window_->first, u"same"_s),
             reference_digest("1", sha1 ? QCryptographicHash::Sha1 : QCryptographicHash::Md5));
    QCOMPARE(dialogs().size(), 1);
    QVERIFY(dialogs().first()->findChild<QLabel*>()->text().endsWith(u" Il y a des erreurs."_s));
}

void TestComparison::compare_marks_selections()
{
    lay_out(*left_, u"A/x=1, A/y=9, B/x=2, top=t, other=o"_s);
    lay_out(*right_, u"A/x=2, B/x=2, top=T, other=o"_s);
    show_both();
    MyTreeWidget& left = *window_->first;
    MyTreeWidget& right = *window_->second;
    expand(right, u"A"_s);
    const auto compare = [&](const QStringList& on_left, const QStringList& on_right) {
        window_->clear_message();
        select_names(left, on_left);
        select_names(right, on_right);
        QSignalSpy done(window_->window.get(), &MainFen::alldone);
        window_->action(u"Comparer"_s)->trigger();
        return window_->wait_idle() && done.count() == 1;
    };
    // Namesakes pair up in the order in which they were hashed, whatever their directories.
    QVERIFY(compare({u"A"_s, u"B"_s, u"top"_s}, {u"A"_s, u"B"_s, u"top"_s}));
    QCOMPARE(marks(left), u"A/x red, A/y yellow, B/x green, top red"_s);
    QCOMPARE(marks(right), u"A/x red, B/x green, top red"_s);
    QVERIFY(compare({u"B"_s}, {u"A"_s, u"B/x"_s}));
    QCOMPARE(marks(left), u"A/x white, A/y white, B/x green, top white"_s);
    QCOMPARE(marks(right), u"A/x green, B/x yellow, top white"_s);
    QVERIFY(compare({}, {}));
    QCOMPARE(marks(left).count(u"white"_s), 4);
}

void TestComparison::same_directory_and_empty_ones()
{
    show_both();
    QVERIFY(window_->compare_all());
    QVERIFY(marks(*window_->first).isEmpty() && marks(*window_->second).isEmpty());
    QCOMPARE(dialogs().size(), 1);
    QVERIFY(dialogs().first()->findChild<QLabel*>()->text().endsWith(u" Tout est OK !"_s));

    lay_out(*left_, u"a=1, b=2"_s);
    window_->second->changeModel(left_->path());
    QVERIFY(window_->compare_all());
    for (MyTreeWidget* pane : {window_->first, window_->second}) {
        QCOMPARE(marks(*pane), u"a green, b green"_s);
    }
}

void TestComparison::single_pane_job_marks()
{
    lay_out(*left_, u"a=1"_s);
    lay_out(*right_, u"a=1, b=1"_s);
    show_both();
    QSignalSpy done(window_->window.get(), &MainFen::alldone);
    window_->second->HashDir();
    QVERIFY(window_->wait_idle());
    QCOMPARE(marks(*window_->second), u"a yellow, b yellow"_s);
    QVERIFY(marks(*window_->first).isEmpty());
    QCOMPARE(done.count(), 1);
    QCOMPARE(dialogs().size(), 1);
}

void TestComparison::time_is_told_once()
{
    lay_out(*left_, u"a=1"_s);
    show_both();
    QVERIFY(window_->compare_all());
    static const QRegularExpression told(u"^Temps total : \\d+\\.\\d\\ds$"_s);
    QVERIFY2(told.match(message()).hasMatch(), qPrintable(message()));
    QTRY_VERIFY_WITH_TIMEOUT(message().isEmpty(), 20000);

    // While such a message is shown, another end counts as the same run.
    window_->window->statusBar()->showMessage(u"... Temps total : 1"_s);
    QSignalSpy done(window_->window.get(), &MainFen::alldone);
    window_->second->changeModel(left_->path());
    window_->second->HashAll();
    QVERIFY(window_->wait_idle());
    QCOMPARE(done.count(), 0);
    QCOMPARE(marks(*window_->second), u"a "_s);
    QCOMPARE(window_->second->job_items.size(), 1);
    QCOMPARE(message(), u"... Temps total : 1"_s);
}

void TestComparison::controls_are_disabled_for_a_run()
{
    lay_out(*left_, u"a=1"_s);
    lay_out(*right_, u"a=1"_s);
    HUGE_FILE_OR_SKIP(*left_, u"huge"_s);
    HUGE_FILE_OR_SKIP(*right_, u"huge"_s);
    show_both();
    QSignalSpy done(window_->window.get(), &MainFen::alldone);
    QCOMPARE(enabled(), u"11111|111"_s);
    window_->action(u"Comparer Tout"_s)->trigger();
    QCOMPARE(enabled(), u"00000|111"_s);
    for (const MyTreeWidget* pane : {window_->first, window_->second}) {
        QTRY_VERIFY(pane->status_label->text().endsWith(u"/huge"_s));
    }
    for (const QString& name : {u"Comparer"_s, u"Comparer Tout"_s, u"Réinitialiser"_s}) {
        window_->action(name)->trigger();
    }
    QCOMPARE(checksum_at(*window_->first, u"a"_s), reference_digest("1"));

    window_->action(u"Stop"_s)->trigger();
    QVERIFY(window_->wait_idle());
    QCOMPARE(enabled(), u"11111|111"_s);
    QCOMPARE(marks(*window_->first), u"a "_s); // a checksum and no mark
    QCOMPARE(done.count(), 0);
    QVERIFY(dialogs().isEmpty() && message().isEmpty());
}

void TestComparison::one_trigger_is_one_run()
{
    lay_out(*left_, u"a=1"_s);
    lay_out(*right_, u"a=1"_s);
    show_both();
    for (int i = 0; i < 3; ++i) {
        window_->window->reactiveAll();
    }
    QSignalSpy listings(window_->first->model(), &QAbstractItemModel::modelReset);
    QSignalSpy ends(window_->first, &MyTreeWidget::alldone);
    for (int run = 1; run <= 4; ++run) {
        QVERIFY(window_->compare_all());
        QCOMPARE(listings.count(), run);
        QCOMPARE(ends.count(), run);
        QCOMPARE(marks(*window_->first), u"a green"_s);
        QCOMPARE(dialogs().size(), (run + 1) / 2); // the results open on every other run
        dialogs().last()->close();
    }
}

// Reading a large directory leaves the window alive, so a command may come again or come early.
void TestComparison::trigger_while_listing_is_one_run()
{
    for (int i = 0; i < 5000; ++i) {
        left_->createFile(QString::number(i));
    }
    window_->second->changeModel(left_->path());
    connect(window_->first->model(), &QAbstractItemModel::rowsInserted,
            [] { QThread::msleep(45); });
    int triggered = 0;
    QTimer timer;
    timer.callOnTimeout([&] {
        if (window_->first->topLevelItemCount() > 1 && !window_->first->job_running()) {
            timer.setInterval(1);
            ++triggered;
            window_->action(u"Comparer Tout"_s)->trigger();
        }
        if (triggered == 2) {
            timer.stop();
        }
    });
    timer.start(0);
    window_->first->changeModel(left_->path());
    timer.stop();
    QVERIFY(triggered > 0);
    QVERIFY(window_->wait_idle());
    QCOMPARE(enabled(), u"11111|111"_s);
    for (MyTreeWidget* pane : {window_->first, window_->second}) {
        const QString found = marks(*pane);
        QCOMPARE(found.count(u','), 4999);
        QCOMPARE(found.count(u" green"_s), 5000);
    }
}

void TestComparison::each_call_takes_note_of_one_stop()
{
    HUGE_FILE_OR_SKIP(*left_, u"huge"_s);
    window_->first->changeModel(left_->path());
    window_->second->changeModel(left_->path());
    for (MyTreeWidget* pane : {window_->first, window_->second}) {
        disconnect(&pane->job_watcher, nullptr, window_->window.get(), nullptr);
        pane->HashAll();
    }
    window_->action(u"Stop"_s)->trigger();
    QVERIFY(window_->wait_idle());
    QSignalSpy done(window_->window.get(), &MainFen::alldone);
    QString seen;
    for (int call = 0; call < 4; ++call) {
        seen += u"%1%2 %3, "_s.arg(window_->first->stop_flagged())
                    .arg(window_->second->stop_flagged())
                    .arg(done.count());
        window_->window->compare();
    }
    QCOMPARE(seen, u"11 0, 01 0, 00 0, 00 1, "_s);
    QVERIFY(marks(*window_->first).isEmpty());
}

// On light colours as a mark has, in light and dark surroundings.
void TestComparison::marks_are_readable()
{
    PaneRow row({u"a"_s, u"/a"_s, 1, false}, PaneRow::Origin::Listed);
    QVERIFY(!row.data(ColName, Qt::ForegroundRole).isValid());
    for (const Mark mark : {Mark::Identical, Mark::Different, Mark::NoPartner, Mark::Cleared}) {
        row.set_mark(mark);
        for (const int column : {ColName, ColSize, ColHash}) {
            QCOMPARE(row.foreground(column).color(), QColor(Qt::black));
        }
        QVERIFY(!row.data(ColPath, Qt::BackgroundRole).isValid());
        QVERIFY(!row.data(ColPath, Qt::ForegroundRole).isValid());
    }
}

QTEST_MAIN(TestComparison)
#include "test_comparison.moc"
