#include "rows/selection.h"

#include <QItemSelectionModel>
#include <QSet>

QList<QTreeWidgetItem*> selected_rows(const QTreeWidget& tree)
{
    QList<QTreeWidgetItem*> rows;
    QSet<QTreeWidgetItem*> seen;
    const QItemSelection selection = tree.selectionModel()->selection();
    for (const QItemSelectionRange& range : selection) {
        for (int r = range.top(); r <= range.bottom(); ++r) {
            const QModelIndex index = tree.model()->index(r, range.left(), range.parent());
            QTreeWidgetItem* row = tree.itemFromIndex(index);
            if (!row || (selection.size() > 1 && seen.contains(row))) {
                continue;
            }
            if (selection.size() > 1) {
                seen.insert(row);
            }
            rows.append(row);
        }
    }
    return rows;
}

void select_rows(QTreeWidget& tree, const QList<QTreeWidgetItem*>& rows)
{
    QItemSelection selection;
    QModelIndex first;
    QModelIndex last;
    const auto close_range = [&] {
        if (first.isValid()) {
            selection.append(QItemSelectionRange(first, last));
        }
    };
    for (QTreeWidgetItem* row : rows) {
        const QModelIndex index = tree.indexFromItem(row);
        if (!index.isValid()) {
            continue;
        }
        const bool follows =
            last.isValid() && index.parent() == last.parent() && index.row() == last.row() + 1;
        if (!follows) {
            close_range();
            first = index;
        }
        last = index;
    }
    close_range();
    tree.selectionModel()->select(selection,
                                  QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

void deselect_top_level_rows(QTreeWidget& tree)
{
    if (tree.topLevelItemCount() == 0) {
        return;
    }
    const QItemSelection all(tree.indexFromItem(tree.topLevelItem(0)),
                             tree.indexFromItem(tree.topLevelItem(tree.topLevelItemCount() - 1)));
    tree.selectionModel()->select(all, QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
}
