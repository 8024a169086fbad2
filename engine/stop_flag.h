#pragma once

#include <atomic>
#include <memory>

namespace engine {

/// Asks a piece of background work to end early. Shared between the thread that may raise it and
/// the work that polls it; once raised it stays so, and every piece of work has one of its own.
using StopFlag = std::shared_ptr<std::atomic_bool>;

/// A new flag, raised from the start when `raised` is set.
inline StopFlag make_stop_flag(bool raised = false)
{
    return std::make_shared<std::atomic_bool>(raised);
}

/// Whether the flag is raised; a null flag never is.
inline bool stop_requested(const StopFlag& flag)
{
    return flag && flag->load(std::memory_order_relaxed);
}

} // namespace engine
