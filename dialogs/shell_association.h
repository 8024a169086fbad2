#pragma once

#include <QString>

/// Makes the program known to the desktop: checksum files (.md5, .sha1) open in it, and every file
/// and directory gets an entry that opens it there.
///
/// Both act at once, report nothing when they fail and can be repeated. They may wait some seconds
/// for the desktop's own tools.
namespace shell_association {

/// Associates the program at this path, given with "/" as separator. `open_verb` is the text of the
/// command that opens a checksum file, in the language of the moment.
void associate(const QString& program_path, const QString& open_verb);

/// Takes the association back. The description of the checksum files stays in the store, where
/// nothing refers to it any more.
void dissociate();

} // namespace shell_association
