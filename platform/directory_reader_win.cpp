#include "platform/directory_reader.h"

#include <QDirIterator>

namespace platform {

void read_directory(const QString& path, QDir::Filters filters,
                    const std::function<bool(DirectoryEntry&&)>& found)
{
    // Each entry comes with its size and kind here, without a further look at the disk.
    for (QDirIterator it(path, filters | QDir::Dirs | QDir::Files); it.hasNext();) {
        it.next();
        const QFileInfo info = it.fileInfo();
        const bool is_dir = info.isDir();
        if ((is_dir || info.isFile()) && !found({info.fileName(), is_dir ? 0 : info.size(), is_dir,
                                                 info.isSymLink() || info.isJunction()})) {
            return;
        }
    }
}

} // namespace platform
