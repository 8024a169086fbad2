#pragma once

class QTreeWidget;

/// Empties the checksums of the rows without children, and whitens those that had one.
void clear_checksums(QTreeWidget& tree);
