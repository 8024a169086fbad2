#include "platform/process_end.h"

#include <qt_windows.h>

#include <cstdlib>

namespace platform {

void end_process(int exit_code)
{
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exit_code));
    std::abort();
}

void quit_on_system_request(std::function<void()> /*quit*/)
{}

} // namespace platform
