#pragma once

#include "tree/pane_host.h"

#include <QAction>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QRadioButton>
#include <QSplitter>
#include <QString>
#include <QStringList>
#include <QToolBar>
#include <QTreeWidgetItem>

#include <memory>

class FenOpt;
class MessageKeeper;
class MyTreeWidget;
class PairMarker;
class RunOverview;
class QTranslator;

/// The main window: two directory panes side by side, the actions, and the comparison of what the
/// panes hashed (mainfen_comparison.cpp). The settings file is read and written in
/// mainfen_settings.cpp; language and About box stand in mainfen_language.cpp.
class MainFen : public QMainWindow, public PaneHost
{
    Q_OBJECT

  public:
    /// Builds the window, restores the saved state and hands the command-line arguments to the
    /// first pane.
    MainFen();
    ~MainFen() override;

    /// The application's translator, set by its owner before the window is shown.
    QTranslator* translator = nullptr;

    // What a pane asks of its window (mainfen_host.cpp).
    void attach(MyTreeWidget& pane) override;
    void attach(FenCheck& dialog) override;
    void choose_algorithm(QCryptographicHash::Algorithm algorithm) override;
    void release_algorithm() override;
    void restart_timer() override;
    void show_status(const QString& text) override;
    bool is_hashing() const override;
    void pane_released() override;
    void finish_marking() override;

    /// Whether the panes have hashed, and their rows are still being marked.
    bool is_marking() const;

    MyTreeWidget* first_pane() const { return tree1; }
    MyTreeWidget* second_pane() const { return tree2; }

  signals:
    void alldone();
    void send_args(QStringList& args);

  public slots:
    void disableAll();
    void compare();
    void reactiveAll();
    void results();
    void setMD5();
    void setSHA1();
    void Apropos();
    void writeSettings();
    void setLang(QString code);
    void compare_against(QList<QTreeWidgetItem*> list);
    void add_exclus();
    void rem_exclus();

  protected slots:
    void createOptions();
    void reinitialiser();
    void reinitialiser_lancer();
    void setSplitOrientHoriz();
    void setSplitOrientVerti();

  private:
    void createActions();
    void connect_actions();
    void createMenus();
    void createToolBars();
    void createLayout();
    void createOverview();
    QWidget* create_pane_container(MyTreeWidget& pane);
    void make_connections();
    void connect_start(QAction* action);
    void dispatch_arguments(QStringList& arguments);

    // mainfen_settings.cpp
    void restore_view_layout();
    void readSettings();

    // mainfen_comparison.cpp
    void start_comparing_selection();
    void start_comparing_all();
    bool consume_stop();
    void tell_verdict();

    // mainfen_exclusions.cpp
    QString suffix_of_sender(QAction* MyTreeWidget::*action) const;

    // mainfen_language.cpp
    bool ask_for_restart();
    void restart();

    QElapsedTimer timer;
    bool results_shown = false;
    bool run_judged = true;         ///< no job has started since the last verdict
    bool compare_postponed = false; ///< a pane was still at work when its end was told
    MessageKeeper* message_keeper = nullptr;
    std::unique_ptr<PairMarker> pair_marker;
    QSplitter* splitter = nullptr;
    RunOverview* overview = nullptr; ///< in the status bar

    QAction* act_quit = nullptr;
    QAction* act_compare = nullptr;
    QAction* act_compare_all = nullptr;
    QAction* act_copy = nullptr;
    QAction* act_copy_all = nullptr;
    QAction* act_options = nullptr;
    QAction* act_about = nullptr;
    QAction* act_stop = nullptr;
    QAction* act_reset = nullptr;
    QAction* act_horiz = nullptr;
    QAction* act_verti = nullptr;

    MyTreeWidget* tree1 = nullptr;
    MyTreeWidget* tree2 = nullptr;
    QToolBar* toolbar = nullptr;
    QRadioButton* radio_md5 = nullptr;
    QRadioButton* radio_sha1 = nullptr;
    QString lang;
    FenOpt* fen_opt = nullptr; ///< only used while the options dialog is open
};
