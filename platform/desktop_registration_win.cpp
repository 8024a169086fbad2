#include "platform/desktop_registration.h"

namespace platform {

void register_with_desktop(const QString&)
{}

void unregister_from_desktop()
{}

} // namespace platform
