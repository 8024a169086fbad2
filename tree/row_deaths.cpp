#include "tree/row_deaths.h"

#include <QTreeWidget>

namespace {

void add_with_children(QTreeWidgetItem* row, QSet<QTreeWidgetItem*>& rows)
{
    rows.insert(row);
    for (int i = 0; i < row->childCount(); ++i) {
        add_with_children(row->child(i), rows);
    }
}

/// The rows first to last below another one, or on the top level when that is null.
QSet<QTreeWidgetItem*> rows_between(const QTreeWidget& tree, QTreeWidgetItem* parent, int first,
                                    int last)
{
    QSet<QTreeWidgetItem*> rows;
    parent = parent ? parent : tree.invisibleRootItem();
    for (int i = first; i <= last; ++i) {
        add_with_children(parent->child(i), rows);
    }
    return rows;
}

} // namespace

void watch_row_deaths(QTreeWidget& tree, std::function<void(const QSet<QTreeWidgetItem*>&)> dying,
                      std::function<void()> all)
{
    QObject::connect(tree.model(), &QAbstractItemModel::modelAboutToBeReset, &tree, all);
    QObject::connect(tree.model(), &QAbstractItemModel::rowsAboutToBeRemoved, &tree,
                     [&tree, some = std::move(dying), all = std::move(all)](const QModelIndex& at,
                                                                            int first, int last) {
                         if (!at.isValid() && last - first + 1 == tree.topLevelItemCount()) {
                             all();
                         } else {
                             some(rows_between(tree, tree.itemFromIndex(at), first, last));
                         }
                     });
}
