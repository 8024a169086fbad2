// What the rest of the program asks of a pane, handed on to the parts that do it.

#include "engine/exclusions.h"
#include "platform/file_manager.h"
#include "rows/pane_row.h"
#include "rows/selection.h"
#include "tree/checksum_file_verifier.h"
#include "tree/checksum_file_writer.h"
#include "tree/copy_text.h"
#include "tree/digest_check.h"
#include "tree/hash_job_controller.h"
#include "tree/mytreewidget.h"
#include "tree/row_expander.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QProgressBar>

using namespace Qt::StringLiterals;

namespace {

void copy_rows(const MyTreeWidget& pane, const QList<QTreeWidgetItem*>& rows)
{
    QList<CopyRow> files;
    for (const QTreeWidgetItem* row : rows) {
        if (row->type() == TypeFile) {
            files.append({checksum_of(*row), name_of(*row), row->text(ColSize), path_of(*row)});
        }
    }
    const QString text = copy_text(files, {pane.ccname, pane.ccsize, pane.ccpath});
    if (!text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}

} // namespace

// Jobs

void MyTreeWidget::HashThis()
{
    jobs_->hash_selection();
}

void MyTreeWidget::HashAll()
{
    jobs_->hash_directory();
}

// HashAll() under the name that the menu actions use.
void MyTreeWidget::HashDir()
{
    HashAll();
}

void MyTreeWidget::tampon_calculate_hash()
{
    jobs_->hash_selection();
}

void MyTreeWidget::tampon_calculate_hashdir()
{
    jobs_->hash_directory();
}

void MyTreeWidget::PopulateList(QTreeWidgetItem* parent)
{
    jobs_->add_directory(parent);
}

void MyTreeWidget::stop_thread()
{
    jobs_->stop();
    writer_->stop();
    verifier_->stop();
    expander_->cancel();
}

void MyTreeWidget::done_single()
{
    status_label->setText(tr("Fini en ") + jobs_->elapsed_text());
    drive_combo->setEnabled(true);
}

bool MyTreeWidget::job_running() const
{
    return jobs_->is_running();
}

bool MyTreeWidget::stop_flagged() const
{
    return jobs_->stop_flagged();
}

void MyTreeWidget::clear_stop_flag()
{
    jobs_->clear_stop_flag();
}

void MyTreeWidget::unselect_all()
{
    clearSelection();
}

void MyTreeWidget::reactivate_all()
{
    unselect_all();
    jobs_->unlock_pane();
    progress->setValue(0);
}

void MyTreeWidget::changeHeaderMD5(bool on)
{
    if (on) {
        headerItem()->setText(ColHash, u"MD5"_s);
        algo = QCryptographicHash::Md5;
    }
}

void MyTreeWidget::changeHeaderSHA1(bool on)
{
    if (on) {
        headerItem()->setText(ColHash, u"SHA1"_s);
        algo = QCryptographicHash::Sha1;
    }
}

// Checksum files and the check of one file. A writer's slot runs twice: from its action, and when
// the job is over.

void MyTreeWidget::cc_file()
{
    const bool asked = sender() == act_md5_file || sender() == act_sha1_file;
    asked ? writer_->begin_files() : writer_->finish_files();
}

void MyTreeWidget::cc_all_file()
{
    const bool asked = sender() == act_md5_dir_file || sender() == act_sha1_dir_file;
    asked ? writer_->begin_directory() : writer_->finish_directory();
}

void MyTreeWidget::compute_compare(QTreeWidgetItem* item)
{
    verifier_->begin(item);
}

void MyTreeWidget::compute_compare2()
{
    verifier_->finish();
}

void MyTreeWidget::checksum()
{
    check_->run();
}

void MyTreeWidget::checksum_hash()
{
    check_->hash();
}

void MyTreeWidget::checksum_hash_done()
{
    check_->show_result();
}

// Exclusions

void MyTreeWidget::set_exclus(QString exclu)
{
    exclusions = engine::parse_exclusions(exclu);
}

QString MyTreeWidget::get_exclus() const
{
    return engine::format_exclusions(exclusions);
}

// What a person does in the pane

void MyTreeWidget::cc()
{
    if (hasFocus()) {
        copy_rows(*this, selected_rows(*this));
    }
}

void MyTreeWidget::ccAll()
{
    if (hasFocus()) {
        copy_rows(*this, content_rows(*this));
    }
}

void MyTreeWidget::open_explorer()
{
    if (const QTreeWidgetItem* row = currentItem()) {
        platform::show_in_file_manager(path_of(*row));
    }
}

void MyTreeWidget::set_AutoScroll(bool on)
{
    if (on) {
        connect(this, &QTreeWidget::itemChanged, this, &MyTreeWidget::scrollitem);
    } else {
        disconnect(this, &QTreeWidget::itemChanged, this, &MyTreeWidget::scrollitem);
    }
}

void MyTreeWidget::scrollitem(QTreeWidgetItem* item, int /*column*/)
{
    setCurrentItem(item);
}

void MyTreeWidget::setopt(bool name, bool size, bool path, bool remember_dir, bool remember_view,
                          bool upper_case)
{
    ccname = name;
    ccsize = size;
    ccpath = path;
    rem_dir = remember_dir;
    rem_view = remember_view;
    upper = upper_case;
}
