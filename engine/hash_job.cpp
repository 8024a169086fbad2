#include "engine/hash_job.h"

#include "engine/exclusions.h"
#include "engine/read_ahead.h"

#include <QSet>

#include <algorithm>
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
    TreeWalk(RowId row, const QString& path, RowId& next_row, const std::stop_token& stop)
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
            OpenDirectory& level = levels_.back();
            if (level.position == level.entries.size()) {
                leave();
                continue;
            }
            Step step{rows_.back(), 0, level.entries.at(level.position++), {}};
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
        levels_.push_back({path, list_directory(path, held_entries, stop_, PathIs::Canonical), 0});
        rows_.push_back(row);
    }

    /// The directories entered and not left yet, the innermost last.
    const std::vector<OpenDirectory>& levels() const { return levels_; }

  private:
    void leave()
    {
        ancestors_.remove(levels_.back().path);
        levels_.pop_back();
        rows_.pop_back();
    }

    RowId& next_row_;
    const std::stop_token& stop_;
    std::vector<OpenDirectory> levels_;
    std::vector<RowId> rows_; ///< of the levels
    QSet<QString> ancestors_;
};

class Job
{
  public:
    Job(const HashPlan& plan, const std::stop_token& stop,
        const std::function<void(JobMessage&&)>& tell)
        : plan_(plan), stop_(stop), tell_(tell), hasher_(plan.algorithm, stop),
          ahead_(plan.exclusions, stop), next_row_(plan.next_row)
    {}

    void run()
    {
        for (const HashStep& step : plan_.steps) {
            ++begun_steps_;
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
            if (stop_.stop_requested()) {
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
            [&] { ahead_.waiting([&] { return route(); }); },
            [&](qint64 read) { ahead_.reading(path, read); },
        };
        ahead_.reached(path);
        return hasher_.hash(path, listener);
    }

    /// What comes after the file in progress.
    Route route() const
    {
        const auto begin = plan_.steps.begin() + static_cast<std::ptrdiff_t>(begun_steps_);
        const size_t left = plan_.steps.size() - begun_steps_;
        const auto count = static_cast<std::ptrdiff_t>(std::min(left, ReadAhead::steps_of_route));
        return {walk_ ? walk_->levels() : std::vector<OpenDirectory>(), {begin, begin + count}};
    }

    void walk(const HashStep& step)
    {
        tell_(DirectoryReached{step.row});
        ahead_.reached(step.path);
        TreeWalk& walk = walk_.emplace(step.row, step.path, next_row_, stop_);
        work_through(walk);
        walk_.reset();
    }

    void work_through(TreeWalk& walk)
    {
        while (!stop_.stop_requested()) {
            std::optional<TreeWalk::Step> found = walk.next();
            if (!found) {
                return;
            }
            if (found->entry.is_dir) {
                const QString path = found->entry.path;
                tell_(DirectoryFound{found->row, found->parent, std::move(found->entry)});
                tell_(DirectoryReached{found->row});
                ahead_.reached(path);
                walk.enter(found->row, path);
            } else if (!is_excluded(plan_.exclusions, found->entry.name)) {
                FileResult result = hash(found->entry.path);
                tell_(FileFound{found->parent, std::move(found->entry), std::move(found->place),
                                std::move(result)});
            }
        }
    }

    const HashPlan& plan_;
    const std::stop_token& stop_;
    const std::function<void(JobMessage&&)>& tell_;
    FileHasher hasher_;
    ReadAhead ahead_;
    RowId next_row_;
    size_t begun_steps_ = 0;
    std::optional<TreeWalk> walk_; ///< in progress
};

} // namespace

void run_hash_job(const HashPlan& plan, const std::stop_token& stop,
                  const std::function<void(JobMessage&&)>& tell)
{
    Job(plan, stop, tell).run();
}

} // namespace engine
