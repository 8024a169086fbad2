#include "tests/support/test_dir.h"

#include <QDir>

#include <qt_windows.h>

// Locked, as by a program that keeps everybody else out.
QString make_unreadable(TestDir& dir, const QString& name)
{
    const QString path = dir.createFile(name, "secret");
    const QString native = QDir::toNativeSeparators(path);
    HANDLE handle = CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), GENERIC_READ, 0,
                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return {};
    }
    dir.keep_open(std::shared_ptr<void>(handle, CloseHandle));
    return path;
}
