#pragma once

class QTreeWidget;

/// Removes all rows of a tree at once and deletes them a few at a time, between which other events
/// have their turn: a large pane takes a second to delete. The tree owns what is still to go. GUI
/// thread only.
void dispose_of_rows(QTreeWidget& tree);
