// What the window does for its panes.

#include "app/mainfen.h"
#include "app/pair_marker.h"
#include "dialogs/fencheck.h"
#include "tree/mytreewidget.h"

#include <QStatusBar>

void MainFen::attach(MyTreeWidget& pane)
{
    connect(&pane, &MyTreeWidget::alldone, this, &MainFen::reactiveAll);
    connect(&pane, &MyTreeWidget::concurrent_compare, this, &MainFen::compare_against);

    // Before the pane's own connections: the algorithm is switched by the time a job starts.
    for (const QAction* action :
         {pane.act_md5, pane.act_md5_all, pane.act_md5_file, pane.act_md5_dir_file}) {
        connect(action, &QAction::triggered, this, &MainFen::setMD5);
    }
    for (const QAction* action :
         {pane.act_sha1, pane.act_sha1_all, pane.act_sha1_file, pane.act_sha1_dir_file}) {
        connect(action, &QAction::triggered, this, &MainFen::setSHA1);
    }
}

void MainFen::attach(FenCheck& dialog)
{
    connect(&dialog.watcher, &QFutureWatcherBase::finished, this, &MainFen::reactiveAll);
    connect(&dialog.watcher, &QFutureWatcherBase::started, this, &MainFen::disableAll);
    connect(&dialog, &FenCheck::finalise, this, &MainFen::reactiveAll);
}

void MainFen::choose_algorithm(QCryptographicHash::Algorithm algorithm)
{
    algorithm == QCryptographicHash::Md5 ? setMD5() : setSHA1();
}

void MainFen::release_algorithm()
{
    if (!is_hashing()) {
        reactiveAll();
    }
}

void MainFen::restart_timer()
{
    finish_marking();
    timer.start();
    run_judged = false;
}

void MainFen::finish_marking()
{
    pair_marker->finish();
}

void MainFen::show_status(const QString& text)
{
    finish_marking(); // whose message was to be seen first
    statusBar()->showMessage(text);
}

bool MainFen::is_hashing() const
{
    return tree1->job_running() || tree2->job_running();
}

void MainFen::pane_released()
{
    if (!run_judged) {
        compare();
    }
    finish_marking(); // before the pane reports
}
