#include "tree/path_arguments.h"

#include "engine/exclusions.h"
#include "rows/pane_row.h"
#include "rows/selection.h"
#include "tree/directory_navigator.h"
#include "tree/hash_job_controller.h"
#include "tree/mytreewidget.h"

#include <QFileInfo>
#include <QSet>

namespace {

void act_on(MyTreeWidget& pane, const QString& name)
{
    pane.deselect_top_level();
    QTreeWidgetItem* row = pane.select_by_name(name);
    if (!row) {
        return; // hidden: it is not listed
    }
    if (row->type() == TypeDir) {
        pane.open_and_hash_all(path_of(*row));
        return;
    }
    pane.setCurrentItem(row, ColName, QItemSelectionModel::NoUpdate);
    pane.scrollToItem(row, QAbstractItemView::PositionAtCenter);
    emit pane.itemActivated(row, ColName);
}

void open_one(MyTreeWidget& pane, const QString& path)
{
    // A shell that completes the name of a directory adds a slash.
    const QFileInfo info(QDir::cleanPath(path));
    if (info.exists()) {
        pane.jobs().restart_timer();
        pane.navigator().open(info.path(), [&pane, name = info.fileName()] { act_on(pane, name); });
    }
}

void hash_rows_of(MyTreeWidget& pane, const QStringList& paths)
{
    const QSet<QString> wanted(paths.begin(), paths.end());
    QList<QTreeWidgetItem*> chosen = content_rows(pane);
    chosen.removeIf([&](const QTreeWidgetItem* row) {
        const QString path = path_of(*row);
        return !wanted.contains(QDir::toNativeSeparators(path)) ||
               engine::is_excluded(pane.exclusions, path);
    });
    pane.deselect_top_level();
    select_rows(pane, chosen);
    pane.HashThis();
}

void open_many(MyTreeWidget& pane, const QStringList& paths)
{
    pane.job_items.clear();
    QString directory;
    for (const QString& path : paths) {
        const QFileInfo info(path);
        if (info.isFile()) {
            directory = info.path();
        }
    }
    if (!directory.isEmpty()) {
        pane.navigator().open(directory, [&pane, paths] { hash_rows_of(pane, paths); });
    }
}

} // namespace

void open_arguments(MyTreeWidget& pane, const QStringList& paths)
{
    if (paths.size() == 1) {
        open_one(pane, paths.first());
    } else {
        open_many(pane, paths);
    }
}
