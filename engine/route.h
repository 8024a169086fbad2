#pragma once

#include "engine/hash_job.h"

#include <optional>
#include <stop_token>
#include <vector>

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

/// Finds out, place by place, what a job will come to. It looks only where the job itself will:
/// excluded files and directories below themselves are left out. Belongs to one thread at a time.
class Scout final
{
  public:
    Scout(QStringList exclusions, std::stop_token stop);

    struct Place
    {
        QString path;
        bool is_dir = false;
    };

    /// Follows this route from now on.
    void take(Route&& route);

    /// The next place; a directory has been listed when it is returned. None at the end of the
    /// route, or when the flag is raised.
    std::optional<Place> next();

  private:
    std::optional<Place> next_step();
    Place enter(const QString& path);

    const QStringList exclusions_;
    const std::stop_token stop_;
    Route route_;
    size_t step_ = 0; ///< the next one
};

} // namespace engine
