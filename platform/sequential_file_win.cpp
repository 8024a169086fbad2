#include "platform/sequential_file.h"

#include <QDir>

#include <qt_windows.h>

#include <fcntl.h>
#include <io.h>

using namespace Qt::StringLiterals;

namespace platform {

namespace {

/// The extended form of an absolute path, which lifts the limit of 260 characters.
QString extended_path(const QString& path)
{
    const QString native = QDir::toNativeSeparators(QDir::cleanPath(path));
    if (native.startsWith(uR"(\\?\)"_s)) {
        return native;
    }
    if (native.startsWith(uR"(\\)"_s)) {
        return uR"(\\?\UNC\)"_s + native.sliced(2);
    }
    return native.size() > 2 && native[1] == u':' ? uR"(\\?\)"_s + native : native;
}

} // namespace

bool open_sequential(QFile& file, const QString& path)
{
    const QString native = extended_path(path);
    const HANDLE handle =
        CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), GENERIC_READ,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    const int fd = GetFileType(handle) == FILE_TYPE_DISK
                       ? _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDONLY | _O_BINARY)
                       : -1;
    if (fd < 0) {
        CloseHandle(handle);
        return false;
    }
    file.setFileName(path);
    if (!file.open(fd, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle)) {
        _close(fd);
        return false;
    }
    return true;
}

} // namespace platform
