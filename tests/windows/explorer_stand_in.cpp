// Leaves the command line that it was started with in "command_line.txt", in its working directory.

#include <windows.h>

#include <cwchar>

// Not a console program: one started without a console would be given a window.
int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int)
{
    const wchar_t* command_line = GetCommandLineW();
    const auto size = static_cast<DWORD>(std::wcslen(command_line) * sizeof(wchar_t));
    const HANDLE file = CreateFileW(L"command_line.tmp", GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    const BOOL ok = WriteFile(file, command_line, size, &written, nullptr);
    CloseHandle(file);
    // Under its final name the file is whole.
    return ok && MoveFileW(L"command_line.tmp", L"command_line.txt") ? 0 : 1;
}
