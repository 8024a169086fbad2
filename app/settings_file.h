#pragma once

#include <QString>

/// Paths of the settings file "Tavrel.ini", to read it and to write it; looked up anew at every
/// call.
///
/// It lies in the working directory. Where that has no such file and takes none (a shell may start
/// the program anywhere), it lies in the user's configuration folder. A file in the working
/// directory that cannot be written is read until there is one in that folder, which then counts;
/// the path to write brings it there, as a copy of the other. Where there is none at all, the
/// file "first-start.ini" beside the program is read, if the installation left one.
QString settings_path_to_read();
QString settings_path_to_write();
