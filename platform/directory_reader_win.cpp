#include "platform/directory_reader.h"

#include <QDirIterator>
#include <QFile>

namespace platform {

namespace {

/// A shortcut is a file like others, whatever it leads to and whether that is there.
DirectoryEntry shortcut(const QFileInfo& info)
{
    return {info.fileName(), QFile(info.filePath()).size(), false, false};
}

} // namespace

void read_directory(const QString& path, QDir::Filters filters,
                    const std::function<bool(DirectoryEntry&&)>& found)
{
    // Each entry comes with its size and kind here, without a further look at the disk. Without
    // QDir::System, broken shortcuts would be left out.
    for (QDirIterator it(path, filters | QDir::Dirs | QDir::Files | QDir::System); it.hasNext();) {
        it.next();
        const QFileInfo info = it.fileInfo();
        if (info.isShortcut()) {
            if (!found(shortcut(info))) {
                return;
            }
            continue;
        }
        const bool is_dir = info.isDir();
        if ((is_dir || info.isFile()) && !found({info.fileName(), is_dir ? 0 : info.size(), is_dir,
                                                 info.isSymLink() || info.isJunction()})) {
            return;
        }
    }
}

} // namespace platform
