// The main window: its actions, what a run enables and disables, and what a comparison marks.

#include "dialogs/fenres.h"
#include "tests/pane_fixture.h"

#include <QApplication>
#include <QLabel>
#include <QListView>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QTreeWidgetItemIterator>
#include <QWidgetAction>

#include <cmath>

using namespace Qt::StringLiterals;
using engine::Mark;

namespace {

/// The entries of a menu or tool bar: texts, "-" for a separator, "=" for the spacer.
QStringList entries(const QWidget& bar)
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
    return texts;
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

QStringList lines(const QListView& view)
{
    QStringList texts;
    for (int i = 0; i < view.model()->rowCount(); ++i) {
        texts.append(view.model()->index(i, 0).data().toString());
    }
    return texts;
}

/// Lays out files given as "name=content".
void lay_out(TestDir& dir, const QStringList& files)
{
    for (const QString& file : files) {
        dir.createFile(file.section(u'=', 0, 0), file.section(u'=', 1).toUtf8());
    }
}

double luminance(const QColor& color)
{
    const auto linear = [](float c) { return std::pow(static_cast<double>(c), 2.2); };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// Contrast of two colours, 1 to 21. From 4.5 on, text is held to be readable.
double contrast(const QColor& a, const QColor& b)
{
    const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
    return (light + 0.05) / (dark + 0.05);
}

} // namespace

class TestComparison : public QObject
{
    Q_OBJECT

  private slots:
    void init();
    void cleanup();
    void actions_data();
    void actions();
    void menus_and_tool_bar();
    void methods_are_found_by_name();
    void splitter_orientation();
    void algorithm_lock();
    void compare_all_marks_data();
    void compare_all_marks();
    void compare_marks_selections();
    void same_directory_and_empty_ones();
    void single_pane_job_marks();
    void dropped_files_select_their_namesakes();
    void results_open_every_other_time();
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
    QString text;
    for (const char* name : {"Comparer", "Comparer Tout", "Réinitialiser"}) {
        text += QString::number(window_->action(QString::fromUtf8(name))->isEnabled());
    }
    text += QString::number(window_->radio(u"MD5"_s)->isEnabled());
    text += QString::number(window_->radio(u"SHA1"_s)->isEnabled()) + u'|';
    for (const char* name : {"Stop", "Copier le resultat", "Options..."}) {
        text += QString::number(window_->action(QString::fromUtf8(name))->isEnabled());
    }
    return text;
}

void TestComparison::actions_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<QKeySequence>("shortcut");
    QTest::addColumn<QString>("tip");
    QTest::addColumn<bool>("icon");
    int place = 0;
    const auto row = [&](const char* text, const QKeySequence& shortcut, const char* tip,
                         bool icon) {
        QTest::newRow(text) << place++ << shortcut << QString::fromUtf8(tip) << icon;
    };
    row("Quitter", QKeySequence(u"Ctrl+Q"_s), "", true);
    row("Comparer", QKeySequence(u"Ctrl+F"_s), "Compare les éléments sélectionnés.", false);
    row("Comparer Tout", QKeySequence(u"Ctrl+Shift+F"_s), "Compare tous les éléments.", false);
    row("A Propos...", {}, "", false);
    row("Copier le resultat", QKeySequence(QKeySequence::Copy),
        "Copie le résultat dans le Presse Papier", false);
    row("Copier tous les résultats", QKeySequence(u"Ctrl+Shift+C"_s),
        "Copie tous les résultat dans le Presse Papier", false);
    row("Options...", {}, "", false);
    row("Stop", {}, "", true);
    row("Réinitialiser", QKeySequence(QKeySequence::Refresh), "Réinitialiser les vues.", true);
    row("Vues Horizontales.", QKeySequence(u"F2"_s), "Vues Horizontales.", true);
    row("Vues Verticales.", QKeySequence(u"F3"_s), "Vues Verticales.", true);
}

void TestComparison::actions()
{
    QFETCH(int, place);
    const auto all = window_->window->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(all.size(), 11);
    const QAction* action = all[place];
    QCOMPARE(action->text(), QString::fromUtf8(QTest::currentDataTag()));
    QTEST(action->shortcut(), "shortcut");
    QTEST(action->statusTip(), "tip");
    QTEST(!action->icon().pixmap(16).isNull(), "icon");
    QVERIFY(!action->isCheckable());
}

void TestComparison::menus_and_tool_bar()
{
    QStringList menus;
    for (const QAction* menu : window_->window->menuBar()->actions()) {
        menus.append(menu->text() + u": "_s + entries(*menu->menu()).join(u", "_s));
    }
    const QStringList expected = {
        u"&Fichier: Comparer, Comparer Tout, -, Quitter"_s,
        u"&Edition: Copier le resultat, Copier tous les résultats, -, Options..."_s,
        u"Fe&nêtre: Vues Horizontales., Vues Verticales."_s, u"?: A Propos..."_s};
    QCOMPARE(menus, expected);
    const auto bars = window_->window->findChildren<QToolBar*>();
    QCOMPARE(bars.size(), 1);
    QCOMPARE(bars[0]->windowTitle(), u"Main"_s);
    QCOMPARE(entries(*bars[0]).join(u", "_s),
             u"MD5, SHA1, -, Comparer, -, Comparer Tout, -, Stop, -, Réinitialiser, =, -, "
             "Vues Horizontales., Vues Verticales."_s);
    QCOMPARE(window_->window->windowTitle(), u"Tavrel"_s);
    QVERIFY(window_->radio(u"MD5"_s)->isChecked());
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
    const auto* side_by_side = window_->action(u"Vues Horizontales."_s);
    const auto* stacked = window_->action(u"Vues Verticales."_s);
    QCOMPARE(splitter->orientation(), Qt::Horizontal);
    QVERIFY(!side_by_side->isEnabled() && stacked->isEnabled());
    window_->window->show();
    window_->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window_->window.get()));
    const QList<std::pair<Qt::Key, Qt::Orientation>> keys = {{Qt::Key_F2, Qt::Horizontal},
                                                             {Qt::Key_F3, Qt::Vertical},
                                                             {Qt::Key_F3, Qt::Vertical},
                                                             {Qt::Key_F2, Qt::Horizontal}};
    for (const auto& [key, orientation] : keys) {
        QTest::keyClick(window_->window.get(), key);
        QCOMPARE(splitter->orientation(), orientation);
        QCOMPARE(side_by_side->isEnabled(), orientation == Qt::Vertical);
        QCOMPARE(stacked->isEnabled(), orientation == Qt::Horizontal);
    }
}

void TestComparison::algorithm_lock()
{
    window_->window->setSHA1();
    QCOMPARE(enabled(), u"11100|111"_s);
    window_->radio(u"MD5"_s)->click();
    for (const MyTreeWidget* pane : {window_->first, window_->second}) {
        QCOMPARE(pane->algorithm(), QCryptographicHash::Sha1);
        QCOMPARE(pane->headerItem()->text(ColHash), u"SHA1"_s);
    }
    window_->window->setMD5();
    QCOMPARE(enabled(), u"11100|111"_s);
    QCOMPARE(window_->second->algorithm(), QCryptographicHash::Md5);
    window_->window->reactiveAll();
    QCOMPARE(enabled(), u"11111|111"_s);
}

void TestComparison::compare_all_marks_data()
{
    QTest::addColumn<QString>("algorithm");
    QTest::newRow("MD5") << u"MD5"_s;
    QTest::newRow("SHA1") << u"SHA1"_s;
}

void TestComparison::compare_all_marks()
{
    QFETCH(QString, algorithm);
    window_->radio(algorithm)->click();
    lay_out(*left_, {u"changed=1"_s, u"empty="_s, u"emptied=1"_s, u"left=1"_s, u"aname=1"_s,
                     u"same=1"_s, u"skip.tmp=1"_s, u"sub/same=1"_s});
    lay_out(*right_, {u"changed=2"_s, u"empty="_s, u"emptied="_s, u"Aname=1"_s, u"right=1"_s,
                      u"same=1"_s, u"skip.tmp=2"_s, u"sub/same=2"_s});
    const bool unreadable = !make_unreadable(*left_, u"zsecret"_s).isEmpty();
    if (unreadable) {
        lay_out(*right_, {u"zsecret=1"_s});
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
    const bool sha1 = algorithm == u"SHA1"_s;
    QCOMPARE(checksum_at(*window_->first, u"same"_s),
             reference_digest("1", sha1 ? QCryptographicHash::Sha1 : QCryptographicHash::Md5));

    QCOMPARE(dialogs().size(), 1);
    const auto views = dialogs().first()->findChildren<QListView*>();
    QVERIFY(lines(*views[0]).contains(left_->at(u"changed"_s)));
    QVERIFY(lines(*views[1]).contains(left_->at(u"left"_s) + u" --> "_s));
    QVERIFY(lines(*views[1]).contains(right_->at(u"right"_s) + u" <-- "_s));
}

void TestComparison::compare_marks_selections()
{
    lay_out(*left_, {u"A/x=1"_s, u"A/y=9"_s, u"B/x=2"_s, u"top=t"_s, u"other=o"_s});
    lay_out(*right_, {u"A/x=2"_s, u"B/x=2"_s, u"top=T"_s, u"other=o"_s});
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

    lay_out(*left_, {u"a=1"_s, u"b=2"_s});
    window_->second->changeModel(left_->path());
    QVERIFY(window_->compare_all());
    for (MyTreeWidget* pane : {window_->first, window_->second}) {
        QCOMPARE(marks(*pane), u"a green, b green"_s);
    }
}

void TestComparison::single_pane_job_marks()
{
    lay_out(*left_, {u"a=1"_s});
    lay_out(*right_, {u"a=1"_s, u"b=1"_s});
    show_both();
    QSignalSpy done(window_->window.get(), &MainFen::alldone);
    window_->second->HashDir();
    QVERIFY(window_->wait_idle());
    QCOMPARE(marks(*window_->second), u"a yellow, b yellow"_s);
    QVERIFY(marks(*window_->first).isEmpty());
    QCOMPARE(done.count(), 1);
    QCOMPARE(dialogs().size(), 1);
}

void TestComparison::dropped_files_select_their_namesakes()
{
    TestDir other;
    lay_out(other, {u"a=1"_s, u"more/a=2"_s, u"z=1"_s});
    lay_out(*left_, {u"a=1"_s, u"b=1"_s});
    lay_out(*right_, {u"a=1"_s});
    show_both();
    MyTreeWidget& left = *window_->first;
    MyTreeWidget& right = *window_->second;
    select_names(left, {u"b"_s});
    QVERIFY(drop_files(right, {other.at(u"z"_s), other.at(u"a"_s), other.at(u"more/a"_s)}));
    QVERIFY(window_->wait_idle());
    QCOMPARE(marks(left), u"a green"_s);
    QCOMPARE(mark_at(right, u"z"_s), u"yellow"_s);

    // The other way round, onto a list: all namesakes are hashed, and nothing else.
    window_->clear_message();
    select_names(right, {u"z"_s});
    QVERIFY(drop_files(left, {left_->at(u"a"_s)}));
    QVERIFY(window_->wait_idle());
    QCOMPARE(marks(left), u"a green"_s);
    QCOMPARE(mark_at(right, u"z"_s), u"white"_s);
    const QStringList namesakes = {right.topLevelItem(0)->text(ColHash),
                                   right.topLevelItem(1)->text(ColHash)};
    QCOMPARE(namesakes, (QStringList{reference_digest("1"), reference_digest("2")}));
}

void TestComparison::results_open_every_other_time()
{
    lay_out(*left_, {u"a=1"_s});
    show_both();
    QList<qsizetype> counts;
    for (int run = 0; run < 4; ++run) {
        QVERIFY(window_->compare_all());
        counts.append(dialogs().size());
        dialogs().last()->close();
    }
    QCOMPARE(counts, (QList<qsizetype>{1, 1, 2, 2}));
}

void TestComparison::time_is_told_once()
{
    lay_out(*left_, {u"a=1"_s});
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
    lay_out(*left_, {u"a=1"_s});
    lay_out(*right_, {u"a=1"_s});
    if (left_->createHuge(u"huge"_s).isEmpty() || right_->createHuge(u"huge"_s).isEmpty()) {
        QSKIP("no sparse files here");
    }
    show_both();
    QSignalSpy done(window_->window.get(), &MainFen::alldone);
    QCOMPARE(enabled(), u"11111|111"_s);
    window_->action(u"Comparer Tout"_s)->trigger();
    QCOMPARE(enabled(), u"00000|111"_s);
    for (const MyTreeWidget* pane : {window_->first, window_->second}) {
        QTRY_VERIFY(pane->status_label->text().endsWith(u"/huge"_s));
    }
    for (const char* name : {"Comparer", "Comparer Tout", "Réinitialiser"}) {
        window_->action(QString::fromUtf8(name))->trigger();
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
    lay_out(*left_, {u"a=1"_s});
    lay_out(*right_, {u"a=1"_s});
    show_both();
    for (int i = 0; i < 3; ++i) {
        window_->window->reactiveAll();
    }
    QSignalSpy listings(window_->first->model(), &QAbstractItemModel::modelReset);
    QSignalSpy ends(window_->first, &MyTreeWidget::alldone);
    for (int run = 1; run <= 2; ++run) {
        QVERIFY(window_->compare_all());
        QCOMPARE(listings.count(), run);
        QCOMPARE(ends.count(), run);
        QCOMPARE(marks(*window_->first), u"a green"_s);
    }
}

// Reading a large directory leaves the window alive, so a command may come again or come early.
void TestComparison::trigger_while_listing_is_one_run()
{
    for (int i = 0; i < 5000; ++i) {
        left_->createFile(QString::number(i));
    }
    window_->second->changeModel(left_->path());
    QObject::connect(window_->first->model(), &QAbstractItemModel::rowsInserted,
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
    if (left_->createHuge(u"huge"_s).isEmpty()) {
        QSKIP("no sparse files here");
    }
    window_->first->changeModel(left_->path());
    window_->second->changeModel(left_->path());
    for (MyTreeWidget* pane : {window_->first, window_->second}) {
        disconnect(&pane->job_watcher, nullptr, window_->window.get(), nullptr);
        pane->HashAll();
    }
    window_->action(u"Stop"_s)->trigger();
    QVERIFY(window_->wait_idle());
    QSignalSpy done(window_->window.get(), &MainFen::alldone);
    const auto flags = [&] {
        return QString::number(window_->first->stop_flagged()) +
               QString::number(window_->second->stop_flagged());
    };
    QStringList seen = {flags()};
    for (int call = 0; call < 3; ++call) {
        window_->window->compare();
        seen.append(flags() + u' ' + QString::number(done.count()));
    }
    QCOMPARE(seen, (QStringList{u"11"_s, u"01 0"_s, u"00 0"_s, u"00 1"_s}));
    QVERIFY(marks(*window_->first).isEmpty());
}

void TestComparison::marks_are_readable()
{
    PaneRow row({u"a"_s, u"/a"_s, 1, false}, PaneRow::Origin::Listed);
    QVERIFY(!row.data(ColName, Qt::ForegroundRole).isValid());
    row.setText(ColHash, u"1"_s);
    for (const Mark mark : {Mark::Identical, Mark::Different, Mark::NoPartner, Mark::Cleared}) {
        row.set_mark(mark);
        for (const int column : {ColName, ColSize, ColHash}) {
            QVERIFY(contrast(row.foreground(column).color(), row.background(column).color()) > 4.5);
        }
        QVERIFY(!row.data(ColPath, Qt::BackgroundRole).isValid());
        QVERIFY(!row.data(ColPath, Qt::ForegroundRole).isValid());
    }
    row.set_mark(Mark::Different);
    row.clear_checksum();
    QCOMPARE(row.background(ColName), QBrush(Qt::white, Qt::SolidPattern));
    QCOMPARE(row.text(ColHash), QString());
}

QTEST_MAIN(TestComparison)
#include "test_comparison.moc"
