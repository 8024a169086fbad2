#include "tests/support/test_dir.h"

#include <QDir>

#include <qt_windows.h>

// Locked, as by a program that keeps everybody else out.
void make_unreadable(TestDir& dir, const QString& name)
{
    const QString native = QDir::toNativeSeparators(dir.createFile(name, "secret"));
    HANDLE handle = CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), GENERIC_READ, 0,
                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    dir.open_files.append(std::shared_ptr<void>(handle, CloseHandle));
}
