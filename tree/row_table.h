#pragma once

#include "engine/hash_job.h"

#include <QSet>
#include <QTreeWidgetItem>

#include <vector>

/// The rows of one job by their numbers. A job names rows by number only, so a row may die while
/// the job runs: its number then names nothing.
class RowTable final
{
  public:
    /// Gives the next number to a row.
    engine::RowId add(QTreeWidgetItem* row);

    /// Notes the row of a number that a job gave out.
    void set(engine::RowId id, QTreeWidgetItem* row);

    /// The row, or null when it is gone or was never made.
    QTreeWidgetItem* row(engine::RowId id) const;

    /// How many numbers are given out.
    engine::RowId size() const { return static_cast<engine::RowId>(rows_.size()); }

    /// These rows die now.
    void forget(const QSet<QTreeWidgetItem*>& rows);

    /// All rows die now; their numbers stay given out.
    void forget_all();

  private:
    std::vector<QTreeWidgetItem*> rows_;
};
