// Checks the current file against a digest that the user enters.

#include "dialogs/fencheck.h"
#include "tree/mytreewidget.h"
#include "tree/pane_row.h"

void MyTreeWidget::checksum()
{
    const QTreeWidgetItem* row = currentItem();
    if (!row || row->type() != TypeFile) {
        return;
    }
    check_dialog = new FenCheck(path_of(*row), this);
    connect(check_dialog, &FenCheck::calcul, this, &MyTreeWidget::checksum_hash);
    disconnect(this, &MyTreeWidget::prog_bar, progress, &QProgressBar::setValue);
    connect(this, &MyTreeWidget::prog_bar, check_dialog, &FenCheck::progress);
    connect(this, &MyTreeWidget::checksum_hash_done_send, check_dialog, &FenCheck::handle_res);
    connect(&check_dialog->watcher, &QFutureWatcherBase::finished, this,
            &MyTreeWidget::checksum_hash_done);
    connect_check_dialog(*check_dialog);
    connect(check_dialog, &FenCheck::finalise, this, &MyTreeWidget::stop_thread);
    check_dialog->exec();
    delete check_dialog;
    connect(this, &MyTreeWidget::prog_bar, progress, &QProgressBar::setValue);
}

void MyTreeWidget::checksum_hash()
{
    QTreeWidgetItem* row = currentItem();
    if (job_running() || !row) {
        return;
    }
    constexpr qsizetype md5_digits = 32;
    // The pane keeps the algorithm for its next jobs, whatever its header says.
    algo = check_dialog->entry_text().size() == md5_digits ? QCryptographicHash::Md5
                                                           : QCryptographicHash::Sha1;
    calculate_hash(row);
    check_dialog->watcher.setFuture(file_future);
}

void MyTreeWidget::checksum_hash_done()
{
    check_dialog->set_check_enabled(true);
    check_dialog->set_progress_visible(false);
    const QTreeWidgetItem* row = currentItem();
    emit checksum_hash_done_send(row ? checksum_of(*row) : QString());
}
