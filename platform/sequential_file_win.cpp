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

/// A C descriptor of a file on a disk, which owns the handle; -1 when it cannot be opened.
int open_descriptor(const QString& path, qint64& size)
{
    const QString native = extended_path(path);
    const HANDLE handle =
        CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), GENERIC_READ,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return -1;
    }
    LARGE_INTEGER bytes = {};
    const bool on_disk = GetFileType(handle) == FILE_TYPE_DISK && GetFileSizeEx(handle, &bytes);
    const int descriptor =
        on_disk ? _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDONLY | _O_BINARY) : -1;
    if (descriptor < 0) {
        CloseHandle(handle);
    }
    size = bytes.QuadPart;
    return descriptor;
}

} // namespace

SequentialFile::~SequentialFile()
{
    if (descriptor_ != closed) {
        _close(descriptor_);
    }
}

bool SequentialFile::open(const QString& path)
{
    descriptor_ = open_descriptor(path, size_);
    return descriptor_ != closed;
}

qint64 SequentialFile::read(char* into, qint64 length)
{
    return _read(descriptor_, into, static_cast<unsigned int>(length));
}

bool open_regular(QFile& file, const QString& path)
{
    qint64 size = 0;
    const int descriptor = open_descriptor(path, size);
    if (descriptor < 0) {
        return false;
    }
    file.setFileName(path);
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        _close(descriptor);
        return false;
    }
    return true;
}

} // namespace platform
