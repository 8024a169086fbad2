#include "tree/row_table.h"

#include <algorithm>

engine::RowId RowTable::add(QTreeWidgetItem* row)
{
    rows_.push_back(row);
    return size() - 1;
}

void RowTable::set(engine::RowId id, QTreeWidgetItem* row)
{
    const auto index = static_cast<size_t>(id);
    if (index >= rows_.size()) {
        rows_.resize(index + 1, nullptr);
    }
    rows_[index] = row;
}

QTreeWidgetItem* RowTable::row(engine::RowId id) const
{
    const auto index = static_cast<size_t>(id);
    return index < rows_.size() ? rows_[index] : nullptr;
}

void RowTable::forget(const QSet<QTreeWidgetItem*>& rows)
{
    for (QTreeWidgetItem*& row : rows_) {
        if (rows.contains(row)) {
            row = nullptr;
        }
    }
}

void RowTable::forget_all()
{
    std::fill(rows_.begin(), rows_.end(), nullptr);
}
