#include "rows/row_marks.h"

#include "rows/pane_row.h"

#include <QTreeWidget>

namespace {

void clear_below(QTreeWidgetItem* row)
{
    for (int i = 0; i < row->childCount(); ++i) {
        clear_below(row->child(i));
    }
    if (row->childCount() == 0 && !checksum_of(*row).isEmpty()) {
        static_cast<PaneRow*>(row)->clear_checksum();
    }
}

} // namespace

void clear_checksums(QTreeWidget& tree)
{
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
        clear_below(tree.topLevelItem(i));
    }
    tree.viewport()->update();
}
