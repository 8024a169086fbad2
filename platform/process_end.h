#pragma once

#include <functional>

namespace platform {

/// Ends the process at once with this exit code, whatever its other threads do: nothing is waited
/// for and no destructor runs. All that is to be kept must have been written.
[[noreturn]] void end_process(int exit_code);

/// Calls `quit` in the thread of the event loop when the system asks the program to end (Unix:
/// SIGTERM, SIGINT, SIGHUP; Windows tells the windows by itself). Call once, with the application
/// object in place.
void quit_on_system_request(std::function<void()> quit);

} // namespace platform
