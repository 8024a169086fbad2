#pragma once

#include "engine/hash_job.h"
#include "tree/row_table.h"

#include <QList>
#include <QSet>

#include <vector>

class QTreeWidgetItem;

/// Turns rows into the plan of a job: what to hash, in which order, and which number is which row.
///
/// The rows that a job is asked for are handed over at once and added in portions; none of them may
/// die before they are added.
class HashPlanBuilder final
{
  public:
    /// `directory` is the canonical path that the top-level rows lie in; empty when each lies
    /// where its path says.
    HashPlanBuilder(QCryptographicHash::Algorithm algorithm, const QStringList& exclusions,
                    const QString& directory);

    /// What to add: these rows, with all that directories among them hold.
    void plan_selection(QList<QTreeWidgetItem*> rows);

    /// What to add: those of these rows, each named once, that are files and not excluded.
    void plan_files(QList<QTreeWidgetItem*> rows);

    /// Adds the next rows; answers whether all are added.
    bool advance(qsizetype rows);

    /// Adds a directory with all that is below it: next the rows that it has, or else what a walk
    /// will find.
    void add_directory(QTreeWidgetItem* row);

    /// Files that the plan names; -1 when walks will find more.
    int file_count() const { return walks_ ? -1 : files_; }

    engine::HashPlan take_plan();
    RowTable take_rows() { return std::move(rows_); }

  private:
    /// Adds a file, unless it has a step: a row that is selected together with its directory is
    /// hashed once, or it would take two partners in a comparison.
    void add_file(QTreeWidgetItem* row);
    void add_selected(QTreeWidgetItem* row);
    void add_wanted(QTreeWidgetItem* row);
    bool add_next();
    void add(engine::HashStep::Kind kind, QTreeWidgetItem* row);
    bool add_once(engine::HashStep::Kind kind, QTreeWidgetItem* row);

    QList<QTreeWidgetItem*> wanted_;
    qsizetype position_ = 0; ///< of the next wanted row

    /// A directory whose rows are being added before the next wanted row.
    struct Open
    {
        QTreeWidgetItem* row;
        int next_child;
    };
    std::vector<Open> open_; ///< the innermost last
    bool files_only_ = false;
    engine::HashPlan plan_;
    QString directory_;
    RowTable rows_;
    QSet<QTreeWidgetItem*> added_;
    int files_ = 0;
    bool walks_ = false;
};
