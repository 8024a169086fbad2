#pragma once

class QTreeView;

/// Makes a tree show the whole text of a cell, or of a column's header, as tool tip while the
/// column is too narrow for it. What works for it belongs to the tree.
void show_cut_texts_as_tips(QTreeView& tree);
