#include "engine/route.h"

#include "engine/exclusions.h"

#include <algorithm>
#include <utility>

namespace engine {

Scout::Scout(QStringList exclusions, std::stop_token stop)
    : exclusions_(std::move(exclusions)), stop_(std::move(stop))
{}

void Scout::take(Route&& route)
{
    route_ = std::move(route);
    step_ = 0;
}

std::optional<Scout::Place> Scout::next()
{
    while (!stop_.stop_requested()) {
        if (route_.directories.empty()) {
            return next_step();
        }
        OpenDirectory& directory = route_.directories.back();
        if (directory.position == directory.entries.size()) {
            route_.directories.pop_back();
            continue;
        }
        const Entry entry = directory.entries.at(directory.position++);
        if (entry.is_dir) {
            return enter(entry.path);
        }
        if (!is_excluded(exclusions_, entry.name)) {
            return Place{entry.path, false};
        }
    }
    return std::nullopt;
}

std::optional<Scout::Place> Scout::next_step()
{
    while (step_ < route_.steps.size()) {
        const HashStep& step = route_.steps[step_++];
        switch (step.kind) {
        case HashStep::Kind::File:
            return Place{step.path, false};
        case HashStep::Kind::Enter:
            break;
        case HashStep::Kind::Walk:
            return enter(step.path);
        }
    }
    return std::nullopt;
}

Scout::Place Scout::enter(const QString& path)
{
    const auto is_this = [&](const OpenDirectory& open) { return open.path == path; };
    const auto& open = route_.directories;
    if (std::none_of(open.begin(), open.end(), is_this)) {
        route_.directories.push_back(
            {path, list_directory(path, held_entries, stop_, PathIs::Canonical), 0});
    }
    return {path, true};
}

} // namespace engine
