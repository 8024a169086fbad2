#include "tree/hash_plan_builder.h"

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

void HashPlanBuilder::add_distinct_files(const QList<QTreeWidgetItem*>& rows)
{
    plan_.steps.reserve(static_cast<size_t>(rows.size()));
    for (QTreeWidgetItem* row : rows) {
        add(Kind::File, row);
    }
}

void HashPlanBuilder::add_directory(QTreeWidgetItem* row)
{
    const bool known = row->childCount() > 0;
    if (!add_once(known ? Kind::Enter : Kind::Walk, row)) {
        return;
    }
    for (int i = 0; i < row->childCount(); ++i) {
        QTreeWidgetItem* child = row->child(i);
        if (child->type() == TypeFile) {
            add_file(child);
        } else if (!is_way_up(child)) {
            add_directory(child);
        }
    }
}

engine::HashPlan HashPlanBuilder::take_plan()
{
    plan_.next_row = rows_.size();
    return std::move(plan_);
}
