#pragma once

#include <QDir>
#include <QString>

#include <functional>

namespace platform {

/// A file or directory as its directory tells of it.
struct DirectoryEntry
{
    QString name;
    qint64 size = 0; ///< bytes; 0 for directories
    bool is_dir = false;
    bool is_link = false; ///< its path leads elsewhere
};

/// Reads a directory in the system's own order: files and directories, links to such included,
/// without hidden ones; "." and ".." as QDir::NoDot and QDir::NoDotDot in `filters` say. `found` is
/// called for each until it answers false. A directory that cannot be read has no entries.
void read_directory(const QString& path, QDir::Filters filters,
                    const std::function<bool(DirectoryEntry&&)>& found);

/// The canonical path of what a link, or a junction, leads to. Empty when there is nothing.
QString link_target(const QString& path);

} // namespace platform
