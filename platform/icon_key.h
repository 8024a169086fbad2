#pragma once

#include <QString>

namespace platform {

/// What decides the system icon of a file, so that files with the same key can share one icon: its
/// suffix in lower case, or on Windows the whole path for the few types that carry an icon of
/// their own. Empty for a file without a suffix, which has the system's plain icon.
QString file_icon_key(const QString& path);

} // namespace platform
