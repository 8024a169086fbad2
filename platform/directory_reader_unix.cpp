#include "platform/directory_reader.h"

#include <QFile>
#include <QFileInfo>

#include <cstring>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace platform {

namespace {

struct CloseDirectory
{
    void operator()(DIR* directory) const { ::closedir(directory); }
};

bool is_wanted(const char* name, QDir::Filters filters)
{
    if (std::strcmp(name, ".") == 0) {
        return !filters.testFlag(QDir::NoDot);
    }
    if (std::strcmp(name, "..") == 0) {
        return !filters.testFlag(QDir::NoDotDot);
    }
    return name[0] != '.';
}

bool is_link(int directory, const dirent& entry)
{
    if (entry.d_type != DT_UNKNOWN) {
        return entry.d_type == DT_LNK;
    }
    struct stat status = {};
    return ::fstatat(directory, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISLNK(status.st_mode);
}

} // namespace

void read_directory(const QString& path, QDir::Filters filters,
                    const std::function<bool(DirectoryEntry&&)>& found)
{
    const std::unique_ptr<DIR, CloseDirectory> directory(
        ::opendir(QFile::encodeName(path).constData()));
    if (!directory) {
        return;
    }
    // Sizes are asked for by name within the open directory: by full path, every question would
    // walk down from the root again.
    const int descriptor = ::dirfd(directory.get());
    while (const dirent* entry = ::readdir(directory.get())) {
        struct stat status = {};
        if (!is_wanted(entry->d_name, filters) ||
            ::fstatat(descriptor, entry->d_name, &status, 0) != 0) {
            continue;
        }
        const bool is_dir = S_ISDIR(status.st_mode);
        if ((is_dir || S_ISREG(status.st_mode)) &&
            !found({QFile::decodeName(entry->d_name), is_dir ? 0 : status.st_size, is_dir,
                    is_link(descriptor, *entry)})) {
            return;
        }
    }
}

QString link_target(const QString& path)
{
    return QFileInfo(path).canonicalFilePath();
}

} // namespace platform
