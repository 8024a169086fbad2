// The two menu commands that leave a file type out and take it back; both panes get the change.

#include "app/mainfen.h"
#include "rows/pane_row.h"
#include "tree/mytreewidget.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

/// The suffix of the current row of the pane whose action sent the signal; null without such a row.
QString MainFen::suffix_of_sender(QAction* MyTreeWidget::*action) const
{
    const MyTreeWidget* pane = sender() == tree1->*action ? tree1 : tree2;
    const QTreeWidgetItem* row = pane->currentItem();
    if (!row) {
        return {};
    }
    const QString suffix = QFileInfo(path_of(*row)).suffix();
    // Null means that there is no row; a file without a suffix has an empty one.
    return suffix.isNull() ? u""_s : suffix;
}

void MainFen::add_exclus()
{
    const QString suffix = suffix_of_sender(&MyTreeWidget::act_exclude);
    if (!suffix.isNull()) {
        tree1->exclusions.append(suffix);
        tree2->exclusions.append(suffix);
    }
}

void MainFen::rem_exclus()
{
    const QString suffix = suffix_of_sender(&MyTreeWidget::act_include);
    if (!suffix.isNull()) {
        tree1->exclusions.removeOne(suffix);
        tree2->exclusions.removeOne(suffix);
    }
}
