// All that a pane asks of the main window.

#include "app/mainfen.h"
#include "dialogs/fencheck.h"
#include "tree/mytreewidget.h"

#include <QStatusBar>

void MyTreeWidget::connect_main_window()
{
    if (!main_window) {
        return;
    }
    connect(this, &MyTreeWidget::alldone, main_window, &MainFen::reactiveAll);
    connect(this, &MyTreeWidget::concurrent_compare, main_window, &MainFen::compare_against);

    // Before the pane's own connections: the algorithm is switched by the time a job starts.
    for (const QAction* action : {act_md5, act_md5_all, act_md5_file, act_md5_dir_file}) {
        connect(action, &QAction::triggered, main_window, &MainFen::setMD5);
    }
    for (const QAction* action : {act_sha1, act_sha1_all, act_sha1_file, act_sha1_dir_file}) {
        connect(action, &QAction::triggered, main_window, &MainFen::setSHA1);
    }
}

void MyTreeWidget::connect_check_dialog(FenCheck& dialog)
{
    if (!main_window) {
        return;
    }
    connect(&dialog.watcher, &QFutureWatcherBase::finished, main_window, &MainFen::reactiveAll);
    connect(&dialog.watcher, &QFutureWatcherBase::started, main_window, &MainFen::disableAll);
    connect(&dialog, &FenCheck::finalise, main_window, &MainFen::reactiveAll);
}

bool MyTreeWidget::comparison_starts() const
{
    return main_window && main_window->is_starting();
}

void MyTreeWidget::restart_total_timer()
{
    if (main_window) {
        main_window->restart_timer();
    }
}

void MyTreeWidget::show_in_status_bar(const QString& text)
{
    if (main_window) {
        main_window->statusBar()->showMessage(text);
    }
}

// What switching the algorithm disables is enabled by the end of a job: there will be none.
void MyTreeWidget::enable_main_window()
{
    if (main_window && !main_window->first_pane()->job_running() &&
        !main_window->second_pane()->job_running()) {
        main_window->reactiveAll();
    }
}

void MyTreeWidget::switch_algorithm(QCryptographicHash::Algorithm algorithm)
{
    const bool md5 = algorithm == QCryptographicHash::Md5;
    if (main_window) {
        md5 ? main_window->setMD5() : main_window->setSHA1();
    } else {
        md5 ? changeHeaderMD5(true) : changeHeaderSHA1(true);
    }
}
