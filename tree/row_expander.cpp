#include "tree/row_expander.h"

#include "rows/pane_row.h"

#include <QTreeWidget>

#include <algorithm>
#include <utility>

namespace {

// See DirectoryNavigator: a directory that answers at once is not seen empty.
constexpr int patience_ms = 8;

bool is_own_ancestor(const QTreeWidgetItem& row)
{
    const QString path = path_of(row);
    for (const QTreeWidgetItem* above = row.parent(); above; above = above->parent()) {
        if (path_of(*above) == path) {
            return true;
        }
    }
    return false;
}

bool can_be_filled(const QTreeWidgetItem* row)
{
    return row && row->type() == TypeDir && !is_way_up(row);
}

} // namespace

RowExpander::RowExpander(QTreeWidget& tree) : tree_(tree), inserter_(tree)
{}

void RowExpander::set_lazy(bool on)
{
    disconnect(&tree_, &QTreeWidget::itemExpanded, this, nullptr);
    if (on) {
        connect(&tree_, &QTreeWidget::itemExpanded, this, &RowExpander::fill);
    }
}

void RowExpander::fill(QTreeWidgetItem* row)
{
    if (can_be_filled(row) && row->childCount() == 0) {
        add(row, false);
    }
}

void RowExpander::expand_all(QTreeWidgetItem* row)
{
    if (!can_be_filled(row) || is_own_ancestor(*row)) {
        return;
    }
    if (row->childCount() == 0) {
        add(row, true);
        row->setExpanded(true);
    } else {
        row->setExpanded(true);
        expand_children(row);
    }
}

void RowExpander::expand_children(QTreeWidgetItem* row)
{
    for (int i = 0; i < row->childCount() && row->child(i)->type() == TypeDir; ++i) {
        expand_all(row->child(i));
    }
}

void RowExpander::add(QTreeWidgetItem* row, bool with_all_below)
{
    const auto known = std::find_if(queue_.begin(), queue_.end(),
                                    [row](const Request& request) { return request.row == row; });
    if (known != queue_.end()) {
        known->with_all_below |= with_all_below;
        return;
    }
    queue_.push_back({row, with_all_below});
    if (queue_.size() == 1) {
        start_first();
    }
}

void RowExpander::start_first()
{
    const QString path = path_of(*queue_.front().row);
    loader_.reset(new DirectoryLoader({path, engine::held_entries, false}));
    connect(loader_.get(), &DirectoryLoader::loaded, this, [this](QList<engine::Entry>& entries) {
        loader_.reset();
        inserter_.insert(queue_.front().row, std::move(entries), [this] { finish_first(); });
    });
    if (!queue_.front().with_all_below) {
        loader_->wait(patience_ms);
    }
}

void RowExpander::drop_first()
{
    queue_.pop_front();
    if (queue_.empty()) {
        emit settled();
    } else {
        start_first();
    }
}

void RowExpander::finish_first()
{
    const Request done = queue_.front();
    if (done.with_all_below) {
        expand_children(done.row);
    }
    drop_first();
}

void RowExpander::forget(const QSet<QTreeWidgetItem*>& dying)
{
    if (queue_.empty()) {
        return;
    }
    const QTreeWidgetItem* first = queue_.front().row;
    const auto dies = [&](const Request& request) { return dying.contains(request.row); };
    queue_.erase(std::remove_if(queue_.begin() + 1, queue_.end(), dies), queue_.end());
    if (dying.contains(const_cast<QTreeWidgetItem*>(first))) {
        loader_.reset();
        inserter_.cancel();
        drop_first();
    }
}

void RowExpander::cancel()
{
    if (!queue_.empty()) {
        loader_.reset();
        inserter_.cancel();
        queue_.clear();
        emit settled();
    }
}
