#include "platform/sequential_file.h"

#include <QDir>

#include <qt_windows.h>

#include <fcntl.h>
#include <io.h>

namespace platform {

bool open_sequential(QFile& file, const QString& path)
{
    // The extended form lifts the limit of 260 characters.
    QString native = QDir::toNativeSeparators(QDir::cleanPath(path));
    if (native.startsWith(uR"(\\)") && !native.startsWith(uR"(\\?\)")) {
        native = uR"(\\?\UNC\)" + native.mid(2);
    } else if (native.size() > 2 && native[1] == u':') {
        native = uR"(\\?\)" + native;
    }
    const HANDLE handle =
        CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), GENERIC_READ,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    const int fd = GetFileType(handle) == FILE_TYPE_DISK
                       ? _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDONLY)
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
