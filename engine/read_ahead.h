#pragma once

#include "engine/hash_job.h"

#include <functional>
#include <memory>

namespace engine {

/// A directory in which a job has work left.
struct OpenDirectory
{
    QString path;
    QList<Entry> entries;
    qsizetype position = 0; ///< of the next entry
};

/// What a job still has to do, in its order: first what is left of the directories that it walks,
/// the innermost last, then steps of its plan.
struct Route
{
    std::vector<OpenDirectory> directories;
    std::vector<HashStep> steps;
};

/// Brings into memory what a job will read next: the heads of the next files, and the directories
/// that it is going to list. Files that are in memory cost nothing: a helper on the thread pool
/// starts when the job first has to wait for the drive, and rests as soon as it finds nothing
/// missing for a while.
///
/// The helper looks only at what the job itself would open, exclusions left out, stays a bounded
/// number of files and bytes before it, and holds one file open at a time. What it learns goes
/// nowhere: a job says the same with it and without it, and sees every change up to the moment in
/// which it opens a file.
///
/// Belongs to the job's thread. Destroying it waits for nothing: a helper that hangs on a drive
/// without an answer ends when that returns.
class ReadAhead final
{
  public:
    ReadAhead(QStringList exclusions, const StopFlag& stop);
    ~ReadAhead();
    Q_DISABLE_COPY_MOVE(ReadAhead)

    /// How many steps of its plan a route needs to name.
    static constexpr size_t steps_of_route = 2048;

    /// The job comes to this file, or enters this directory.
    void reached(const QString& path);

    /// The job has to wait for the drive to read the file reached last. `route` tells what comes
    /// after that file; it is called only when the helper does not know the way, and before this
    /// returns.
    void waiting(const std::function<Route()>& route);

  private:
    class Helper;
    std::shared_ptr<Helper> helper_;
};

} // namespace engine
