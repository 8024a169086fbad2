#include "tests/stress/user.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStatusBar>
#include <QTest>
#include <QTreeWidgetItemIterator>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

bool dialog_open()
{
    return QApplication::activeModalWidget() || QApplication::activePopupWidget();
}

} // namespace

User::User(Dice& dice, World& world) : dice_(dice), world_(world)
{
    look_again();
    build_window();
}

User::~User()
{
    window_.reset();
}

void User::build_window()
{
    window_.reset();
    window_ = std::make_unique<MainFen>();
    window_->translator = &translator_;
    window_->show();
    QApplication::setActiveWindow(window_.get());
    stay_in_the_world();
    emit window_changed();
}

QList<MyTreeWidget*> User::panes() const
{
    return {window_->first_pane(), window_->second_pane()};
}

bool User::at_rest() const
{
    return !dialog_open() && !window_->first_pane()->job_running() &&
           !window_->second_pane()->job_running();
}

void User::calm_down()
{
    calming_ = true;
    for (MyTreeWidget* pane : panes()) {
        pane->stop_button->click();
    }
}

bool User::is_in_the_world(const MyTreeWidget& pane) const
{
    return (pane.current_dir().path() + u'/').startsWith(world_.root() + u'/');
}

bool User::stay_in_the_world()
{
    bool inside = true;
    for (MyTreeWidget* pane : panes()) {
        if (!is_in_the_world(*pane)) {
            world_.keep_sides();
            pane->stop_button->click(); // a pane at work does not move
            pane->changeModel(pane == window_->first_pane() ? world_.left() : world_.right());
            inside = inside && is_in_the_world(*pane);
        }
    }
    return inside;
}

void User::let_announcement_pass()
{
    window_->statusBar()->clearMessage();
}

QString User::act()
{
    static const QList<std::pair<int, Act>> acts = {
        {8, &User::compare_sides},
        {18, &User::trigger_window_action},
        {18, &User::trigger_pane_action},
        {12, &User::press_key},
        {10, &User::use_mouse},
        {5, &User::open_context_menu},
        {6, &User::press_button},
        {3, &User::press_radio},
        {1, &User::choose_drive},
        {4, &User::type_path},
        {8, &User::expand},
        {10, &User::select},
        {5, &User::drop},
        {3, &User::pass_arguments},
        {2, &User::scroll},
        {1, &User::new_window},
    };
    if (dialog_open()) {
        return u"waits for a dialog"_s;
    }
    calming_ = false;
    const QScopedValueRollback<int> open(acts_open_, acts_open_ + 1);
    if (!stay_in_the_world()) {
        return u"finds the way back"_s;
    }
    return (this->*dice_.weigh(acts))();
}

MyTreeWidget& User::any_pane()
{
    return *dice_.pick(panes());
}

QTreeWidgetItem* User::any_row(const MyTreeWidget& pane)
{
    if (pane.topLevelItemCount() == 0) {
        return nullptr;
    }
    QTreeWidgetItem* row = pane.topLevelItem(dice_.below(pane.topLevelItemCount()));
    while (row->childCount() > 0 && dice_.chance(60)) {
        row = row->child(dice_.below(row->childCount()));
    }
    return row;
}

// What the program is for; by chance alone it would be rare.
QString User::compare_sides()
{
    const QString below = world_.any_place();
    window_->first_pane()->changeModel(world_.left() + below);
    window_->second_pane()->changeModel(world_.right() + below);
    if (!stay_in_the_world()) {
        return u"finds nothing to compare"_s;
    }
    let_announcement_pass();
    const QKeySequence shortcut(u"Ctrl+Shift+F"_s);
    for (QAction* action : window_->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (action->shortcut() == shortcut) {
            if (dice_.chance(30)) {
                window_->first_pane()->selectAll();
                window_->second_pane()->selectAll();
                QTest::keyClick(window_->first_pane(), Qt::Key_F, Qt::ControlModifier);
            } else {
                action->trigger();
            }
        }
    }
    return u"compares the sides, "_s + (below.isEmpty() ? u"top"_s : below);
}

QString User::trigger_window_action()
{
    QList<QAction*> actions;
    for (QAction* action : window_->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly)) {
        const bool quits = action->shortcut() == QKeySequence(u"Ctrl+Q"_s);
        if (!quits && action->isEnabled() && !action->text().isEmpty()) {
            actions.append(action);
        }
    }
    if (actions.isEmpty()) {
        return u"finds no action"_s;
    }
    QAction* action = dice_.pick(actions);
    const QString text = action->text();
    if (dice_.chance(30)) {
        any_pane().setFocus();
    }
    action->trigger();
    return u"window action: "_s + text;
}

QString User::trigger_pane_action()
{
    MyTreeWidget& pane = any_pane();
    QAction* action =
        dice_.pick(pane.findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly));
    if (dice_.chance(50)) {
        if (QTreeWidgetItem* row = any_row(pane)) {
            pane.setCurrentItem(row);
        }
    }
    const QString text = action->text();
    action->trigger();
    return u"pane action: "_s + text;
}

QString User::press_key()
{
    struct Key
    {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
    };
    static const QList<Key> keys = {
        {Qt::Key_Up, {}},
        {Qt::Key_Down, {}},
        {Qt::Key_Left, {}},
        {Qt::Key_Right, {}},
        {Qt::Key_Home, {}},
        {Qt::Key_End, Qt::ShiftModifier},
        {Qt::Key_Return, {}},
        {Qt::Key_Backspace, {}},
        {Qt::Key_Space, {}},
        {Qt::Key_Escape, {}},
        {Qt::Key_Plus, {}},
        {Qt::Key_Minus, {}},
        {Qt::Key_Tab, {}},
        {Qt::Key_O, {}},
        {Qt::Key_PageDown, {}},
        {Qt::Key_Down, Qt::ShiftModifier},
        {Qt::Key_A, Qt::ControlModifier},
        {Qt::Key_D, Qt::ControlModifier},
        {Qt::Key_S, Qt::ControlModifier},
        {Qt::Key_F, Qt::ControlModifier},
        {Qt::Key_C, Qt::ControlModifier},
        {Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier},
        {Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier},
        {Qt::Key_F5, {}},
        {Qt::Key_F2, {}},
        {Qt::Key_F3, {}},
    };
    const Key key = dice_.pick(keys);
    MyTreeWidget& pane = any_pane();
    pane.setFocus();
    QTest::keyClick(&pane, key.key, key.modifiers);
    return u"key: "_s + QKeySequence(key.key | key.modifiers).toString();
}

QString User::use_mouse()
{
    MyTreeWidget& pane = any_pane();
    const QSize area = pane.viewport()->size();
    QPoint position(dice_.below(qMax(1, area.width())), dice_.below(qMax(1, area.height())));
    if (QTreeWidgetItem* row = dice_.chance(80) ? any_row(pane) : nullptr) {
        pane.scrollToItem(row);
        position = pane.visualItemRect(row).center();
    }
    static const QList<Qt::KeyboardModifiers> modifiers = {
        {}, {}, Qt::ControlModifier, Qt::ShiftModifier};
    if (dice_.chance(40)) {
        QTest::mouseDClick(pane.viewport(), Qt::LeftButton, {}, position);
        return u"double click"_s;
    }
    QTest::mouseClick(pane.viewport(), Qt::LeftButton, dice_.pick(modifiers), position);
    return u"click"_s;
}

QString User::open_context_menu()
{
    MyTreeWidget& pane = any_pane();
    if (QTreeWidgetItem* row = any_row(pane)) {
        pane.setCurrentItem(row);
        row->setSelected(dice_.chance(80));
    }
    const QPoint position(5, 5);
    QContextMenuEvent event(QContextMenuEvent::Mouse, position,
                            pane.viewport()->mapToGlobal(position));
    QApplication::sendEvent(pane.viewport(), &event);
    return u"context menu"_s;
}

QString User::press_button()
{
    MyTreeWidget& pane = any_pane();
    QPushButton* button = dice_.chance(60) ? pane.stop_button : pane.reset_button;
    const bool stop = button == pane.stop_button;
    button->click();
    return stop ? u"pane's stop"_s : u"pane's reset"_s;
}

QString User::press_radio()
{
    QRadioButton* radio = dice_.pick(window_->findChildren<QRadioButton*>());
    radio->click();
    return u"radio button "_s + radio->text();
}

QString User::choose_drive()
{
    MyTreeWidget& pane = any_pane();
    QComboBox& combo = *pane.drive_combo;
    if (!combo.isEnabled()) {
        return u"finds the drives disabled"_s;
    }
    combo.setCurrentIndex(dice_.below(combo.count()));
    emit combo.textActivated(combo.currentText());
    return u"drive "_s + combo.currentText();
}

QString User::type_path()
{
    MyTreeWidget& pane = any_pane();
    static const QList<QString> odd = {
        QString(), u"///"_s, u"relative/path"_s, u"(/)"_s, QString(5000, u'x'), u"/proc/self"_s};
    const QString path = dice_.chance(85) ? world_.any_path() : dice_.pick(odd);
    pane.path_edit->setFocus();
    pane.path_edit->setText(path);
    QTest::keyClick(pane.path_edit, Qt::Key_Return);
    return u"path line: "_s + path.left(200);
}

QString User::expand()
{
    MyTreeWidget& pane = any_pane();
    QTreeWidgetItem* row = any_row(pane);
    if (!row) {
        return u"finds nothing to expand"_s;
    }
    const QString name = row->text(0);
    row->setExpanded(!row->isExpanded());
    return u"expansion of "_s + name;
}

QString User::select()
{
    MyTreeWidget& pane = any_pane();
    if (dice_.chance(40)) {
        pane.selectAll();
        return u"selects everything"_s;
    }
    pane.clearSelection();
    for (int i = dice_.below(6); i > 0; --i) {
        if (QTreeWidgetItem* row = any_row(pane)) {
            row->setSelected(true);
        }
    }
    return u"selects some"_s;
}

QString User::drop()
{
    MyTreeWidget& pane = any_pane();
    QList<QUrl> urls;
    for (int i = dice_.below(5); i > 0; --i) {
        urls.append(dice_.chance(90) ? QUrl::fromLocalFile(world_.any_path())
                                     : QUrl(u"http://localhost/file"_s));
    }
    QMimeData data;
    dice_.chance(95) ? data.setUrls(urls) : data.setText(u"text"_s);
    const QPointF position(20, 20);
    QDragEnterEvent enter(position.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(pane.viewport(), &enter);
    if (!pane.acceptDrops()) {
        return u"may not drop"_s;
    }
    QDropEvent event(position, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(pane.viewport(), &event);
    return u"drop of %1 URLs"_s.arg(urls.size());
}

QString User::pass_arguments()
{
    QStringList paths;
    for (int i = 1 + dice_.below(3); i > 0; --i) {
        paths.append(world_.any_path());
    }
    emit window_->send_args(paths);
    return u"arguments: "_s + paths.join(u' ');
}

QString User::scroll()
{
    QScrollBar* bar = any_pane().verticalScrollBar();
    bar->setValue(dice_.below(bar->maximum() + 1));
    return u"scrolls"_s;
}

QString User::new_window()
{
    if (acts_open_ > 1) {
        return u"keeps the window"_s; // it is in the middle of something
    }
    if (dice_.chance(70)) {
        window_->writeSettings();
    }
    build_window();
    return u"new window"_s;
}
