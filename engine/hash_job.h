#pragma once

#include "engine/file_hasher.h"
#include "engine/listing.h"

#include <QCryptographicHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <stop_token>
#include <variant>
#include <vector>

namespace engine {

/// Names a row of a pane within one job. The pane numbers the rows that it hands over from 0; the
/// job goes on counting for the directories that it discovers.
using RowId = int;

/// One step of a job.
struct HashStep
{
    enum class Kind : quint8 {
        File,  ///< hash this file
        Enter, ///< the steps that follow belong to this directory, whose rows exist already
        Walk,  ///< list this directory and hash what it holds, all the way down
    };

    Kind kind = Kind::File;
    RowId row = 0;
    QString path;
    /// The file under the name that its directory has for it; the same as `path` when empty.
    QString place = {};
};

/// All that a job needs to know, by value: it holds no row, no widget and no pane.
struct HashPlan
{
    QCryptographicHash::Algorithm algorithm = QCryptographicHash::Md5;
    QStringList exclusions; ///< suffixes left out of walked directories
    std::vector<HashStep> steps;
    RowId next_row = 0; ///< the first number free for discovered directories
};

/// The job came to a directory row.
struct DirectoryReached
{
    RowId row = 0;
};

/// A walk found a directory in that of the row `parent`.
struct DirectoryFound
{
    RowId row = 0;
    RowId parent = 0;
    Entry entry;
};

/// A file is open and being read.
struct FileStarted
{
    QString path;
};

/// How much of the file in progress is read, 0 to 100.
struct FileProgress
{
    int percent = 0;
};

/// A file of the plan is done. Its place differs from its path only where that leads elsewhere.
struct FileEnded
{
    RowId row = 0;
    QString path;
    QString place;
    FileResult result;
};

/// A file that a walk found in the directory of the row `parent` is done.
struct FileFound
{
    RowId parent = 0;
    Entry entry;
    QString place; ///< as in FileEnded
    FileResult result;
};

/// What a job tells, in the order in which it happens.
using JobMessage =
    std::variant<DirectoryReached, DirectoryFound, FileStarted, FileProgress, FileEnded, FileFound>;

/// Runs a job to its end, or until the flag is raised, in the calling thread. Every message goes
/// to `tell` from that thread. When the flag is raised during a file, its end is still told; the
/// steps after it are not begun.
void run_hash_job(const HashPlan& plan, const std::stop_token& stop,
                  const std::function<void(JobMessage&&)>& tell);

} // namespace engine
