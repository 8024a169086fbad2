#pragma once

#include "tree/directory_loader.h"
#include "tree/row_inserter.h"

#include <QObject>
#include <QSet>

#include <deque>

class QTreeWidget;
class QTreeWidgetItem;

/// Fills directory rows when they are expanded, one after the other, in the background. GUI thread
/// only.
class RowExpander final : public QObject
{
    Q_OBJECT

  public:
    explicit RowExpander(QTreeWidget& tree);

    /// Whether a directory is listed when its row is expanded.
    void set_lazy(bool on);

    /// Lists the directory of a row that has no rows below it yet. A short listing is there when
    /// this returns. Nothing for null and for the way up.
    void fill(QTreeWidgetItem* row);

    /// Expands a directory row and all below it, as far as no directory is its own ancestor.
    void expand_all(QTreeWidgetItem* row);

    /// These rows die now.
    void forget(const QSet<QTreeWidgetItem*>& dying);

    /// Gives up whatever is still to be filled.
    void cancel();

    bool is_busy() const { return !queue_.empty(); }

  signals:
    /// Nothing is left to be filled.
    void settled();

  private:
    struct Request
    {
        QTreeWidgetItem* row;
        bool with_all_below;
    };

    void add(QTreeWidgetItem* row, bool with_all_below);
    void start_first();
    void drop_first();
    void finish_first();
    void expand_children(QTreeWidgetItem* row);

    QTreeWidget& tree_;
    RowInserter inserter_;
    DirectoryLoaderPointer loader_;
    std::deque<Request> queue_; ///< the first is being filled
};
