#include "platform/directory_reader.h"

#include "platform/extended_path_win.h"

#include <QDirIterator>

#include <qt_windows.h>

using namespace Qt::StringLiterals;

namespace platform {

namespace {

/// Of the file itself, where QFileInfo tells the size of what a shortcut leads to.
qint64 own_size(const QString& path)
{
    const QString native = extended_path(path);
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (!GetFileAttributesExW(reinterpret_cast<const wchar_t*>(native.utf16()),
                              GetFileExInfoStandard, &data)) {
        return 0;
    }
    ULARGE_INTEGER size = {};
    size.LowPart = data.nFileSizeLow;
    size.HighPart = data.nFileSizeHigh;
    return static_cast<qint64>(size.QuadPart);
}

/// A shortcut is a file like others, whatever it leads to and whether that is there.
DirectoryEntry shortcut(const QFileInfo& info)
{
    return {info.fileName(), own_size(info.absoluteFilePath()), false, false};
}

/// The system's own name of an open file or directory, in the form that Qt gives to paths.
QString final_path(HANDLE handle)
{
    const DWORD size = GetFinalPathNameByHandleW(handle, nullptr, 0, VOLUME_NAME_DOS);
    QString path(static_cast<qsizetype>(size), Qt::Uninitialized);
    const DWORD length = GetFinalPathNameByHandleW(handle, reinterpret_cast<wchar_t*>(path.data()),
                                                   size, VOLUME_NAME_DOS);
    if (length == 0 || length >= size) {
        return {};
    }
    path.truncate(static_cast<qsizetype>(length));
    if (path.startsWith(uR"(\\?\UNC\)"_s)) {
        path.replace(0, 8, uR"(\\)"_s);
    } else if (path.startsWith(uR"(\\?\)"_s)) {
        path.remove(0, 4);
    }
    return QDir::fromNativeSeparators(path);
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

QString link_target(const QString& path)
{
    // QFileInfo follows links and stops at junctions, of which one may lead to its own ancestor.
    const QString native = extended_path(path);
    const HANDLE handle =
        CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), FILE_READ_ATTRIBUTES,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return QFileInfo(path).canonicalFilePath();
    }
    const QString target = final_path(handle);
    CloseHandle(handle);
    return target.isEmpty() ? QFileInfo(path).canonicalFilePath() : target;
}

} // namespace platform
