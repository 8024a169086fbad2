#pragma once

#include "engine/listing.h"

#include <QObject>
#include <QTimer>

#include <functional>

class QTreeWidget;
class QTreeWidgetItem;

/// Makes the rows of a listing and adds them to a tree in slices, between which other events have
/// their turn. GUI thread only.
class RowInserter final : public QObject
{
    Q_OBJECT

  public:
    explicit RowInserter(QTreeWidget& tree);

    /// Adds a row for each entry below `parent`, or at the top level for null, and calls `then`
    /// after the last. A short listing is there when this returns.
    void insert(QTreeWidgetItem* parent, QList<engine::Entry> entries, std::function<void()> then);

    /// Adds no more rows; what was to happen after the last is forgotten.
    void cancel();

  private:
    void insert_slice();
    void insert_portion();

    QTreeWidget& tree_;
    QTimer next_slice_;
    QTreeWidgetItem* parent_ = nullptr;
    QList<engine::Entry> entries_;
    qsizetype position_ = 0;
    std::function<void()> then_;
};
