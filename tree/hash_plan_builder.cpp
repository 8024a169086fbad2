#include "tree/hash_plan_builder.h"

#include "engine/exclusions.h"
#include "rows/pane_row.h"

#include <utility>

using Kind = engine::HashStep::Kind;

HashPlanBuilder::HashPlanBuilder(QCryptographicHash::Algorithm algorithm,
                                 const QStringList& exclusions, const QString& directory)
    : directory_(directory)
{
    plan_.algorithm = algorithm;
    plan_.exclusions = exclusions;
}

void HashPlanBuilder::plan_selection(QList<QTreeWidgetItem*> rows)
{
    wanted_ = std::move(rows);
}

void HashPlanBuilder::plan_files(QList<QTreeWidgetItem*> rows)
{
    wanted_ = std::move(rows);
    files_only_ = true;
    plan_.steps.reserve(static_cast<size_t>(wanted_.size()));
}

bool HashPlanBuilder::advance(qsizetype rows)
{
    bool more = true;
    for (; rows > 0 && more; --rows) {
        more = add_next();
    }
    return !more;
}

bool HashPlanBuilder::add_next()
{
    if (!open_.empty()) {
        Open& innermost = open_.back();
        if (innermost.next_child < innermost.row->childCount()) {
            add_selected(innermost.row->child(innermost.next_child++));
        } else {
            open_.pop_back();
        }
        return true;
    }
    if (position_ == wanted_.size()) {
        return false;
    }
    add_wanted(wanted_[position_++]);
    return true;
}

void HashPlanBuilder::add_wanted(QTreeWidgetItem* row)
{
    if (!files_only_) {
        add_selected(row);
    } else if (row->type() == TypeFile && !engine::is_excluded(plan_.exclusions, path_of(*row))) {
        add(Kind::File, row);
    }
}

void HashPlanBuilder::add(Kind kind, QTreeWidgetItem* row)
{
    plan_.steps.push_back({kind, rows_.add(row), path_of(*row), place_of_link(*row, directory_)});
    files_ += kind == Kind::File ? 1 : 0;
    walks_ |= kind == Kind::Walk;
}

bool HashPlanBuilder::add_once(Kind kind, QTreeWidgetItem* row)
{
    if (added_.contains(row)) {
        return false;
    }
    added_.insert(row);
    add(kind, row);
    return true;
}

void HashPlanBuilder::add_file(QTreeWidgetItem* row)
{
    add_once(Kind::File, row);
}

void HashPlanBuilder::add_selected(QTreeWidgetItem* row)
{
    if (row->type() == TypeFile) {
        add_file(row);
    } else if (!is_way_up(row)) {
        add_directory(row);
    }
}

void HashPlanBuilder::add_directory(QTreeWidgetItem* row)
{
    const bool known = row->childCount() > 0;
    if (add_once(known ? Kind::Enter : Kind::Walk, row) && known) {
        open_.push_back({row, 0});
    }
}

engine::HashPlan HashPlanBuilder::take_plan()
{
    plan_.next_row = rows_.size();
    return std::move(plan_);
}
