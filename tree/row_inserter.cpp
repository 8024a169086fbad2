#include "tree/row_inserter.h"

#include "rows/icon_cache.h"
#include "rows/pane_row.h"

#include <QElapsedTimer>
#include <QTreeWidget>

#include <algorithm>
#include <utility>

namespace {

// So many rows are added at a time; after each, a slice may end in time for the next frame.
constexpr qsizetype rows_per_portion = 250;
constexpr int slice_ms = 4;

PaneRow* make_row(const engine::Entry& entry)
{
    auto* row = new PaneRow(entry, PaneRow::Origin::Listed);
    IconCache& icons = IconCache::shared();
    row->set_icon(entry.is_dir ? icons.directory() : icons.file(entry.path));
    return row;
}

/// An item that does not know its position is looked for from the end of its parent's list, and
/// remembers what was found. Asked for right after a few were added, last one first, each is found
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
    do {
        insert_portion();
    } while (position_ < entries_.size() && !slice.hasExpired(slice_ms));
    if (position_ < entries_.size()) {
        next_slice_.start(0);
        return;
    }
    entries_.clear();
    if (const auto then = std::exchange(then_, {})) {
        then();
    }
}

void RowInserter::insert_portion()
{
    const qsizetype end = std::min(position_ + rows_per_portion, entries_.size());
    QList<QTreeWidgetItem*> rows;
    rows.reserve(end - position_);
    while (position_ < end) {
        // Given up one by one: as many at once would take as long as a slice to free.
        const engine::Entry entry = std::exchange(entries_[position_++], {});
        rows.append(make_row(entry));
    }
    parent_ ? parent_->addChildren(rows) : tree_.addTopLevelItems(rows);
    prime_positions(tree_, rows);
}

void RowInserter::cancel()
{
    next_slice_.stop();
    entries_.clear();
    position_ = 0;
    then_ = {};
}
