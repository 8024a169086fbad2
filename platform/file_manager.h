#pragma once

#include <QString>

namespace platform {

/// Shows a path in the system's file manager, started as a process of its own: a file selected in
/// its folder, a directory opened. Nothing is reported when there is no file manager.
///
/// Windows starts "explorer" from its own folder, with "/select," before a file. Unix asks the
/// desktop's file-manager interface (org.freedesktop.FileManager1) and, where nobody answers, opens
/// the folder with its default handler.
void show_in_file_manager(const QString& path);

} // namespace platform
