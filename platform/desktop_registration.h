#pragma once

#include <QString>

/// What a desktop wants to be told beyond the association store. On Windows, that it has changed.
///
/// On a freedesktop desktop the registration consists of files in the user's own data folder: a
/// desktop entry (tavrel.desktop), types for *.md5 and *.sha1, and an icon; and of lines in
/// mimeapps.list. The desktop's own tools refresh its databases, each waited for five seconds at
/// most; without them the files are there all the same. Failures are silent.
namespace platform {

/// Makes the program at this path the one that opens checksum files, and offers it for directories
/// and for files (type application/octet-stream, of which a desktop may derive all others) where
/// another program is known to stay their default: that one is written down. A program that the
/// system has installed has an entry already, and only becomes the default.
void register_with_desktop(const QString& program_path);

/// Takes everything back that names the program, and what was written down for it.
void unregister_from_desktop();

} // namespace platform
