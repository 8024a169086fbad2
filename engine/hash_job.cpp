#include "engine/hash_job.h"

#include "engine/exclusions.h"

#include <QSet>

#include <optional>

namespace engine {

namespace {

QString place_in(const QString& directory, const QString& name)
{
    return directory.endsWith(u'/') ? directory + name : directory + u'/' + name;
}

/// Walks one directory tree, depth first, subdirectories before files.
///
/// The open levels stand in a list instead of on the call stack: a tree may be thousands of levels
/// deep. A directory that is its own ancestor (a link that leads back up) is shown and not entered,
/// so that every walk ends.
class TreeWalk
{
  public:
    TreeWalk(RowId row, const QString& path, RowId& next_row, const StopFlag& stop)
        : next_row_(next_row), stop_(stop)
    {
        enter(row, path);
    }

    struct Step
    {
        RowId parent = 0;
        RowId row = 0; ///< number given to a directory
        Entry entry;
        QString place; ///< the entry under its own name in its directory
    };

    /// The next entry of the walk; none at its end. A directory is entered as soon as it was
    /// returned.
    std::optional<Step> next()
    {
        while (!levels_.empty()) {
            Level& level = levels_.back();
            if (level.position == level.entries.size()) {
                leave();
                continue;
            }
            Step step{level.row, 0, std::move(level.entries[level.position++]), {}};
            step.place =
                step.entry.is_link ? place_in(level.path, step.entry.name) : step.entry.path;
            if (step.entry.is_dir) {
                step.row = next_row_++;
            }
            return step;
        }
        return std::nullopt;
    }

    /// Goes down into a directory that next() returned; refused for an ancestor of itself. The
    /// paths of rows and entries are canonical: to look again at each of thousands of levels, from
    /// the root down, would take minutes.
    void enter(RowId row, const QString& path)
    {
        if (ancestors_.contains(path)) {
            return;
        }
        ancestors_.insert(path);
        levels_.push_back(
            {row, path, list_directory(path, held_entries, stop_, PathIs::Canonical), 0});
    }

  private:
    struct Level
    {
        RowId row = 0;
        QString path;
        QList<Entry> entries;
        qsizetype position = 0;
    };

    void leave()
    {
        ancestors_.remove(levels_.back().path);
        levels_.pop_back();
    }

    RowId& next_row_;
    const StopFlag& stop_;
    std::vector<Level> levels_;
    QSet<QString> ancestors_;
};

class Job
{
  public:
    Job(const HashPlan& plan, const StopFlag& stop, const std::function<void(JobMessage&&)>& tell)
        : plan_(plan), stop_(stop), tell_(tell), hasher_(plan.algorithm, stop),
          next_row_(plan.next_row)
    {}

    void run()
    {
        for (const HashStep& step : plan_.steps) {
            switch (step.kind) {
            case HashStep::Kind::File:
                tell_(FileEnded{step.row, step.path, step.place.isEmpty() ? step.path : step.place,
                                hash(step.path)});
                break;
            case HashStep::Kind::Enter:
                tell_(DirectoryReached{step.row});
                break;
            case HashStep::Kind::Walk:
                walk(step);
                break;
            }
            if (stop_requested(stop_)) {
                return;
            }
        }
    }

  private:
    FileResult hash(const QString& path)
    {
        const FileHasher::Listener listener{
            [&] { tell_(FileStarted{path}); },
            [&](int percent) { tell_(FileProgress{percent}); },
        };
        return hasher_.hash(path, listener);
    }

    void walk(const HashStep& step)
    {
        tell_(DirectoryReached{step.row});
        TreeWalk walk(step.row, step.path, next_row_, stop_);
        while (!stop_requested(stop_)) {
            std::optional<TreeWalk::Step> found = walk.next();
            if (!found) {
                return;
            }
            if (found->entry.is_dir) {
                const QString path = found->entry.path;
                tell_(DirectoryFound{found->row, found->parent, std::move(found->entry)});
                tell_(DirectoryReached{found->row});
                walk.enter(found->row, path);
            } else if (!is_excluded(plan_.exclusions, found->entry.name)) {
                FileResult result = hash(found->entry.path);
                tell_(FileFound{found->parent, std::move(found->entry), std::move(found->place),
                                std::move(result)});
            }
        }
    }

    const HashPlan& plan_;
    const StopFlag& stop_;
    const std::function<void(JobMessage&&)>& tell_;
    FileHasher hasher_;
    RowId next_row_;
};

} // namespace

void run_hash_job(const HashPlan& plan, const StopFlag& stop,
                  const std::function<void(JobMessage&&)>& tell)
{
    Job(plan, stop, tell).run();
}

} // namespace engine
