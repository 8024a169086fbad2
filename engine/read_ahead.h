#pragma once

#include "engine/route.h"

#include <functional>
#include <memory>
#include <stop_token>

namespace engine {

/// Brings into memory what a job will read next: the rest of the file in progress, the heads of the
/// next files, and the directories that it is going to list. Files that are in memory cost nothing:
/// a helper on the thread pool starts when the job first has to wait for the drive, and rests as
/// soon as it finds nothing missing for a while.
///
/// The helper looks only at what the job itself would open, exclusions left out, stays a bounded
/// number of files and bytes before it, and holds two files open at most. What it learns goes
/// nowhere: a job says the same with it and without it, and sees every change up to the moment in
/// which it opens a file.
///
/// Belongs to the job's thread. Destroying it waits for nothing: a helper that hangs on a drive
/// without an answer ends when that returns.
class ReadAhead final
{
  public:
    ReadAhead(QStringList exclusions, const std::stop_token& stop);
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

    /// The job has read so many bytes of a file for which it had to wait, and has more to read.
    void reading(const QString& path, qint64 offset);

  private:
    class Helper;
    std::shared_ptr<Helper> helper_;
    qint64 told_ = -1; ///< place in the file in progress that the helper knows of
};

} // namespace engine
