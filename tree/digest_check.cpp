#include "tree/digest_check.h"

#include "dialogs/fencheck.h"
#include "rows/pane_row.h"
#include "tree/hash_job_controller.h"
#include "tree/mytreewidget.h"
#include "tree/pane_host.h"

#include <QProgressBar>

#include <algorithm>

namespace {

/// The row of a file in a listing that was made anew; null when it is not among the rows.
QTreeWidgetItem* find_file(const MyTreeWidget& pane, const QString& path)
{
    const QList<QTreeWidgetItem*> rows = content_rows(pane);
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const QTreeWidgetItem* row) {
        return row->type() == TypeFile && path_of(*row) == path;
    });
    return found == rows.end() ? nullptr : *found;
}

} // namespace

void DigestCheck::run()
{
    row_ = pane_.currentItem();
    if (!row_ || row_->type() != TypeFile) {
        return;
    }
    path_ = path_of(*row_);
    FenCheck dialog(path_, &pane_);
    dialog_ = &dialog;
    QObject::connect(&dialog, &FenCheck::calcul, &pane_, &MyTreeWidget::checksum_hash);
    QObject::disconnect(&pane_, &MyTreeWidget::prog_bar, pane_.progress, &QProgressBar::setValue);
    QObject::connect(&pane_, &MyTreeWidget::prog_bar, &dialog, &FenCheck::progress);
    QObject::connect(&pane_, &MyTreeWidget::checksum_hash_done_send, &dialog,
                     &FenCheck::handle_res);
    QObject::connect(&dialog.watcher, &QFutureWatcherBase::finished, &pane_,
                     [this] { show_result(); });
    pane_.host().attach(dialog);
    QObject::connect(&dialog, &FenCheck::finalise, &pane_, &MyTreeWidget::stop_thread);
    dialog.exec();
    dialog_ = nullptr;
    QObject::connect(&pane_, &MyTreeWidget::prog_bar, pane_.progress, &QProgressBar::setValue);
}

void DigestCheck::hash()
{
    if (!dialog_ || jobs_.is_running()) {
        return;
    }
    constexpr qsizetype md5_digits = 32;
    // The pane keeps the algorithm for its next jobs, whatever its header says.
    pane_.set_algorithm(dialog_->entry_text().size() == md5_digits ? QCryptographicHash::Md5
                                                                   : QCryptographicHash::Sha1);
    if (!row_) {
        row_ = find_file(pane_, path_);
    }
    result_.clear();
    jobs_.calculate_hash(path_, row_, [this](const QString& text) {
        result_ = text;
        if (!dialog_) {
            pane_.progress->setValue(0); // the rest of a run whose dialog was left is shown there
        }
    });
    dialog_->watcher.setFuture(jobs_.file_future());
}

void DigestCheck::show_result()
{
    if (dialog_) {
        dialog_->set_check_enabled(true);
        dialog_->set_progress_visible(false);
        emit pane_.checksum_hash_done_send(row_ ? checksum_of(*row_) : result_);
    }
}

void DigestCheck::forget(const QSet<QTreeWidgetItem*>& dying)
{
    if (dying.contains(row_)) {
        row_ = nullptr;
    }
}
