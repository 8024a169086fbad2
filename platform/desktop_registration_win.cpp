#include "platform/desktop_registration.h"

#include <qt_windows.h>

#include <shlobj.h>

namespace platform {

namespace {

// Else the shell shows and starts what it has read before.
void tell_shell()
{
    SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
}

} // namespace

void register_with_desktop(const QString& /*program_path*/)
{
    tell_shell();
}

void unregister_from_desktop()
{
    tell_shell();
}

} // namespace platform
