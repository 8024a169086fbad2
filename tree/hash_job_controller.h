#pragma once

#include "engine/hash_job.h"
#include "tree/hash_plan_builder.h"
#include "tree/job_rows.h"

#include <QElapsedTimer>
#include <QFuture>
#include <QSet>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

class DigestRecorder;
class MyTreeWidget;
class QTreeWidgetItem;

namespace engine {
class JobRun;
}

/// A pane's jobs: the one over its rows, the one over a single file, and the stop that ends either.
///
/// A job is planned in the GUI thread and runs on the pool with values only; the rows are written
/// here, by the messages that come back. So a row may die while its job runs, and a job may be
/// asked for while its directory is still being listed: it counts as running and begins with the
/// last row.
class HashJobController final
{
  public:
    HashJobController(MyTreeWidget& pane, DigestRecorder& recorder);
    ~HashJobController();
    Q_DISABLE_COPY_MOVE(HashJobController)

    /// Hashes the selected rows, directories with all that they hold. Nothing while a job runs.
    void hash_selection();

    /// Hashes the top-level files that are not excluded. Nothing while a job runs.
    void hash_directory();

    /// Adds a directory row to the job that is being planned.
    void add_directory(QTreeWidgetItem* row);

    /// Hashes one file with the pane's algorithm. The result goes to the row, if there is one, and
    /// as the text that a row shows to `then`.
    void calculate_hash(const QString& path, QTreeWidgetItem* row,
                        std::function<void(const QString&)> then);
    QFuture<void> file_future() const { return file_future_; }

    /// Asks what runs to end early.
    void stop();

    /// Whether the pane works on its rows, from the launch until all that was done is in the rows.
    bool is_running() const { return occupied_ || rows_future_.isRunning(); }

    /// Keeps jobs and other listings off the pane while it is busy without a job, and lets them in
    /// again.
    void occupy();
    void release();

    /// Lets other listings and drops in again, once nothing works on the rows any more.
    void unlock_pane();

    /// Whether a job was asked to stop and nobody has taken note yet.
    bool stop_flagged() const { return stop_flagged_; }
    void clear_stop_flag() { stop_flagged_ = false; }

    /// Files that the job has done, and of how many; -1 when that is not known yet.
    int files_done() const { return rows_.files_done(); }
    int files_total() const { return files_total_; }

    /// The time since the last launch, or since restart_timer().
    QString elapsed_text() const;
    void restart_timer() { timer_.restart(); }

    /// These rows die now.
    void forget(const QSet<QTreeWidgetItem*>& dying);
    void forget_all();

  private:
    enum class Kind { Selection, Directory };

    void launch(Kind kind);
    void lock_pane();
    void begin();
    void plan_portion();
    void run_plan();
    void finish_planning();
    void finish_hash();
    void receive_single(engine::JobMessage& message);

    MyTreeWidget& pane_;
    DigestRecorder& recorder_;
    Kind kind_ = Kind::Selection;
    bool waiting_ = false; ///< launched, and the directory is still being listed
    bool occupied_ = false;
    bool stop_flagged_ = false; ///< stays raised until the window's comparison takes note
    std::unique_ptr<engine::JobRun> rows_run_;
    std::unique_ptr<engine::JobRun> file_run_;
    QFuture<void> rows_future_;
    QFuture<void> file_future_;
    std::optional<HashPlanBuilder> planning_; ///< until the job starts
    QTimer next_portion_;
    JobRows rows_;
    QTreeWidgetItem* file_row_ = nullptr; ///< that of file_run_
    std::function<void(const QString&)> file_done_;
    int files_total_ = 0;
    QElapsedTimer timer_;
};
