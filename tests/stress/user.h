#pragma once

#include "app/mainfen.h"
#include "tests/stress/dice.h"
#include "tests/stress/world.h"
#include "tree/mytreewidget.h"

#include <QList>
#include <QMenu>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTranslator>

#include <functional>
#include <memory>

class FenCheck;
class FenOpt;

/// Somebody who uses the main window without thinking.
///
/// Does what a person can do by mouse, keys, drops and the command line, and nothing else: while a
/// modal dialog or a menu is open, only that can be used, which a timer sees to. The same timer
/// acts again when an act takes long and leaves the window alive meanwhile. Two things are left out
/// because they would lead out of the test: "Quitter" and the "Oui" that starts the program anew.
class User final : public QObject
{
    Q_OBJECT

  public:
    User(Dice& dice, World& world);
    ~User() override;

    /// Does something, anything; answers what, for the report.
    QString act();

    /// Brings a pane that left the world back into it; before every act, so that nothing is ever
    /// written elsewhere. False if one is still outside.
    bool stay_in_the_world();

    /// Lets the time pass in which the end of a comparison is announced and no other is noticed.
    void let_announcement_pass();

    /// Whether neither a job nor a dialog is at work.
    bool at_rest() const;

    /// Asks everything that is at work to end; until the next act.
    void calm_down();

    MainFen& window() { return *window_; }
    QList<MyTreeWidget*> panes() const;

  signals:
    /// A new window has taken the place of the old one.
    void window_changed();

  private:
    using Act = QString (User::*)();

    QString compare_sides();
    QString trigger_window_action();
    QString trigger_pane_action();
    QString press_key();
    QString use_mouse();
    QString open_context_menu();
    QString press_button();
    QString press_radio();
    QString choose_drive();
    QString type_path();
    QString expand();
    QString select();
    QString drop();
    QString pass_arguments();
    QString scroll();
    QString new_window();

    void build_window();
    bool is_in_the_world(const MyTreeWidget& pane) const;
    MyTreeWidget& any_pane();
    QTreeWidgetItem* any_row(const MyTreeWidget& pane);
    QString any_digest();
    QString any_exclusions();

    void look_again();
    void look_at_dialogs();
    void use_menu(QMenu& menu);
    void use_message(QMessageBox& box);
    void use_check(FenCheck& dialog);
    void use_options(FenOpt& dialog);
    void use_other(QWidget& dialog);

    Dice& dice_;
    World& world_;
    QTranslator translator_;
    std::unique_ptr<MainFen> window_;
    bool calming_ = false; ///< dialogs are closed without delay
    int acts_open_ = 0;    ///< more than one: within the event loop of another
};
