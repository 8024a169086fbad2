#include "tree/row_inserter.h"

#include "rows/icon_cache.h"
#include "rows/pane_row.h"

#include <QElapsedTimer>
#include <QTreeWidget>

#include <algorithm>
#include <utility>

namespace {

// Looked at after every so many rows, a slice ends in time for the next frame.
constexpr qsizetype rows_per_look = 250;
constexpr int slice_ms = 6;

PaneRow* make_row(const engine::Entry& entry)
{
    auto* row = new PaneRow(entry, PaneRow::Origin::Listed);
    IconCache& icons = IconCache::shared();
    row->set_icon(entry.is_dir ? icons.directory() : icons.file(entry.path));
    return row;
}

/// An item that does not know its position is looked for from the end of its parent's list, and
/// remembers what was found. Asked for right after it was added, last one first, each is found
/// near the end; left for later, a large listing would be searched once per row.
void prime_positions(const QTreeWidget& tree, const QList<QTreeWidgetItem*>& rows)
{
    std::for_each(rows.crbegin(), rows.crend(),
                  [&](QTreeWidgetItem* row) { tree.indexFromItem(row); });
}

} // namespace

RowInserter::RowInserter(QTreeWidget& tree) : tree_(tree)
{
    next_slice_.setSingleShot(true);
    connect(&next_slice_, &QTimer::timeout, this, &RowInserter::insert_slice);
}

void RowInserter::insert(QTreeWidgetItem* parent, QList<engine::Entry> entries,
                         std::function<void()> then)
{
    parent_ = parent;
    entries_ = std::move(entries);
    position_ = 0;
    then_ = std::move(then);
    insert_slice();
}

void RowInserter::insert_slice()
{
    QElapsedTimer slice;
    slice.start();
    QList<QTreeWidgetItem*> rows;
    while (position_ < entries_.size()) {
        rows.append(make_row(entries_[position_++]));
        if (rows.size() % rows_per_look == 0 && slice.hasExpired(slice_ms)) {
            break;
        }
    }
    parent_ ? parent_->addChildren(rows) : tree_.addTopLevelItems(rows);
    prime_positions(tree_, rows);
    if (position_ < entries_.size()) {
        next_slice_.start(0);
        return;
    }
    entries_.clear();
    if (const auto then = std::exchange(then_, {})) {
        then();
    }
}

void RowInserter::cancel()
{
    next_slice_.stop();
    entries_.clear();
    position_ = 0;
    then_ = {};
}
