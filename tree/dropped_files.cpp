#include "tree/dropped_files.h"

#include "rows/icon_cache.h"
#include "rows/pane_row.h"
#include "tree/directory_navigator.h"
#include "tree/mytreewidget.h"
#include "tree/pane_host.h"
#include "tree/row_disposal.h"

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

bool is_single_directory(const QMimeData& data, const QStringList& paths)
{
    return data.urls().size() == 1 && paths.size() == 1 && QFileInfo(paths.first()).isDir();
}

QList<QTreeWidgetItem*> make_rows(const QStringList& paths)
{
    QList<QTreeWidgetItem*> rows;
    for (const QString& path : paths) {
        const QFileInfo info(path);
        if (info.isFile()) {
            auto* row = new PaneRow({info.fileName(), info.filePath(), info.size(), false},
                                    PaneRow::Origin::Dropped);
            row->set_icon(IconCache::shared().file(info.filePath()));
            rows.append(row);
        }
    }
    return rows;
}

void show_dropped_files(MyTreeWidget& pane, const QStringList& paths)
{
    pane.navigator().abandon();
    pane.job_items.clear();
    dispose_of_rows(pane);
    pane.addTopLevelItems(make_rows(paths));
    pane.sortItems(ColName, Qt::AscendingOrder);
    for (int i = 0; i < pane.topLevelItemCount(); ++i) {
        pane.job_items.append(pane.topLevelItem(i));
    }
}

} // namespace

void take_drop(MyTreeWidget& pane, QDropEvent& event)
{
    const QStringList paths = local_paths(*event.mimeData());
    const bool directory = is_single_directory(*event.mimeData(), paths);
    // Dropped files are compared with the other pane, which is listed anew for it.
    const bool busy = directory ? pane.job_running() : pane.host().is_hashing();
    if (busy || !event.mimeData()->hasUrls()) {
        event.ignore();
        return;
    }
    event.acceptProposedAction();
    if (directory) {
        pane.open_and_hash_all(paths.first());
        return;
    }
    show_dropped_files(pane, paths);
    if (!pane.job_items.isEmpty()) {
        pane.navigator().enter_custom_mode();
        emit pane.concurrent_compare(pane.job_items);
        pane.HashAll();
    }
}
