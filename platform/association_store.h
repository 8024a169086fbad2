#pragma once

#include <QString>

#include <optional>

/// Where the associations of file types with programs are kept: keys like folders, named by full
/// paths with back slashes that begin with HKEY_CLASSES_ROOT, each with a default value.
///
/// On Windows this is the registry; a user without the right to write there changes nothing. On
/// Unix it is a file of the user's own, Brennick/Tavrel-associations.ini in the configuration
/// folder, whose names of keys hold no slash. Failures are silent.
namespace platform {

/// Sets the default value of a key, which is created when it is not there.
void set_default_value(const QString& key, const QString& value);

/// Removes the group of that name below a key, with all that is in it. The key itself stays.
void remove_group(const QString& key, const QString& group);

/// The default value of a key, or nothing when it has none.
std::optional<QString> default_value(const QString& key);

} // namespace platform
