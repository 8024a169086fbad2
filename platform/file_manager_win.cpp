#include "platform/file_manager.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <qt_windows.h>

#include <array>

using namespace Qt::StringLiterals;

namespace platform {

namespace {

/// The file manager in the Windows folder. By its bare name, one that lies beside a downloaded file
/// might be run.
QString explorer()
{
    std::array<wchar_t, MAX_PATH> folder{};
    const UINT length = GetSystemWindowsDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    return length > 0 && length < folder.size()
               ? QString::fromWCharArray(folder.data()) + "\\explorer.exe"_L1
               : QString();
}

} // namespace

void show_in_file_manager(const QString& path)
{
    QProcess process;
    process.setProgram(explorer());
    if (process.program().isEmpty()) {
        return;
    }
    // It parts its arguments at commas and blanks, by rules of its own.
    const QString quoted = u'"' + QDir::toNativeSeparators(path) + u'"';
    process.setNativeArguments(QFileInfo(path).isDir() ? quoted : "/select,"_L1 + quoted);
    process.startDetached();
}

} // namespace platform
