#pragma once

#include <QSet>

#include <functional>

class QTreeWidget;
class QTreeWidgetItem;

/// Tells of rows of a tree before they are deleted, as long as the tree lives: `dying` of some,
/// with all that is below them, `all` when the tree is emptied. In the GUI thread.
void watch_row_deaths(QTreeWidget& tree, std::function<void(const QSet<QTreeWidgetItem*>&)> dying,
                      std::function<void()> all);
