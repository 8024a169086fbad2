#pragma once

#include <QString>

namespace platform {

/// The extended form of an absolute path, in which the system's own functions take more than 260
/// characters.
QString extended_path(const QString& path);

} // namespace platform
