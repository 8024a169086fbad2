#pragma once

#include <QList>
#include <QTreeWidget>

/// The selected rows in the order of QTreeWidget::selectedItems(). It goes by ranges instead of
/// cells, because a selection may span 100,000 rows.
QList<QTreeWidgetItem*> selected_rows(const QTreeWidget& tree);

/// Adds rows of the tree to its selection in one step, in their order.
void select_rows(QTreeWidget& tree, const QList<QTreeWidgetItem*>& rows);

/// Takes the top-level rows out of the selection.
void deselect_top_level_rows(QTreeWidget& tree);
