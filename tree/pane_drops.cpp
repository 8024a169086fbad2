// Files and directories that reach the pane from outside: dropped onto it, or named on the command
// line.

#include "engine/exclusions.h"
#include "tree/icon_cache.h"
#include "tree/mytreewidget.h"
#include "tree/pane_row.h"
#include "tree/selection.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

namespace {

/// The local paths of dropped URLs; URLs of other kinds have none.
QStringList local_paths(const QMimeData& data)
{
    QStringList paths;
    for (const QUrl& url : data.urls()) {
        const QString path = url.toLocalFile();
        if (!path.isEmpty()) {
            paths.append(path);
        }
    }
    return paths;
}

PaneRow* make_dropped_row(const QFileInfo& info)
{
    auto* row = new PaneRow({info.fileName(), info.filePath(), info.size(), false},
                            PaneRow::Origin::Dropped);
    row->set_icon(IconCache::shared().file(info.filePath()));
    return row;
}

} // namespace

void MyTreeWidget::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls()) {
        event->acceptProposedAction();
    } else {
        event->ignore();
    }
}

void MyTreeWidget::dragMoveEvent(QDragMoveEvent* event)
{
    event->acceptProposedAction();
}

void MyTreeWidget::dragLeaveEvent(QDragLeaveEvent* event)
{
    event->accept();
}

void MyTreeWidget::dropEvent(QDropEvent* event)
{
    if (job_running() || !event->mimeData()->hasUrls()) {
        event->ignore();
        return;
    }
    const QStringList paths = local_paths(*event->mimeData());
    job_items.clear();
    clear();
    event->acceptProposedAction();
    if (event->mimeData()->urls().size() == 1 && paths.size() == 1 &&
        QFileInfo(paths.first()).isDir()) {
        open_and_hash_all(paths.first());
        return;
    }
    add_dropped_rows(paths);
    if (!job_items.isEmpty()) {
        compare_dropped_rows();
    }
}

void MyTreeWidget::add_dropped_rows(const QStringList& paths)
{
    QList<QTreeWidgetItem*> rows;
    for (const QString& path : paths) {
        const QFileInfo info(path);
        if (info.isFile()) {
            rows.append(make_dropped_row(info));
        }
    }
    addTopLevelItems(rows);
    sortItems(ColName, Qt::AscendingOrder);
    for (int i = 0; i < topLevelItemCount(); ++i) {
        job_items.append(topLevelItem(i));
    }
}

void MyTreeWidget::compare_dropped_rows()
{
    const QString custom = tr("Personnalisé");
    int entry = drive_combo->findText(custom, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (entry < 0) {
        drive_combo->addItem(custom);
        entry = drive_combo->count() - 1;
    }
    drive_combo->setCurrentIndex(entry);
    emit concurrent_compare(job_items);
    // The other pane may have been listed meanwhile, and the dropped rows replaced.
    if (in_custom_mode() && !job_items.isEmpty()) {
        HashAll();
    }
}

void MyTreeWidget::open_and_hash_all(const QString& path)
{
    dir.setPath(path);
    status_label->setText(path);
    clear();
    if (!PopulateView()) {
        return;
    }
    restart_total_timer();
    job_items.clear();
    HashAll();
}

QTreeWidgetItem* MyTreeWidget::select_by_name(const QString& name)
{
    for (auto i = static_cast<int>(first_content_row()); i < topLevelItemCount(); ++i) {
        if (name_of(*topLevelItem(i)) == name) {
            topLevelItem(i)->setSelected(true);
            return topLevelItem(i);
        }
    }
    return nullptr;
}

void MyTreeWidget::handle_args(QStringList& args)
{
    if (args.size() == 1) {
        handle_one_argument(args.first());
    } else {
        handle_many_arguments(args);
    }
}

void MyTreeWidget::handle_one_argument(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return;
    }
    job_timer.restart();
    changeModel(info.path());
    deselect_top_level();
    QTreeWidgetItem* row = select_by_name(info.fileName());
    if (!row) {
        return; // hidden: it is not listed
    }
    if (row->type() == TypeDir) {
        open_and_hash_all(path_of(*row));
        return;
    }
    scrollToItem(row, QAbstractItemView::PositionAtCenter);
    emit itemActivated(row, 0);
}

void MyTreeWidget::handle_many_arguments(const QStringList& paths)
{
    job_items.clear();
    bool any_file = false;
    for (const QString& path : paths) {
        const QFileInfo info(path);
        if (info.isFile()) {
            any_file = true;
            changeModel(info.path());
            deselect_top_level();
        }
    }
    if (!any_file) {
        return;
    }
    const QSet<QString> wanted(paths.begin(), paths.end());
    QList<QTreeWidgetItem*> chosen;
    for (auto i = static_cast<int>(first_content_row()); i < topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = topLevelItem(i);
        const QString path = path_of(*row);
        if (wanted.contains(QDir::toNativeSeparators(path)) &&
            !engine::is_excluded(exclusions, path)) {
            chosen.append(row);
        }
    }
    select_rows(*this, chosen);
    HashThis();
}
