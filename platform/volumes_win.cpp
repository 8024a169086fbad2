#include "platform/volumes.h"

#include <QDir>

#include <qt_windows.h>

#include <array>

using namespace Qt::StringLiterals;

namespace platform {

void never_ask_for_media()
{
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
}

QList<Volume> volumes()
{
    QList<Volume> found;
    const QFileInfoList drives = QDir::drives();
    found.reserve(drives.size());
    for (const QFileInfo& drive : drives) {
        found.append({drive.filePath(), volume_label(drive.filePath())});
    }
    return found;
}

QString volume_label(const QString& root)
{
    std::array<wchar_t, 256> name{};
    std::array<wchar_t, 256> file_system{};
    DWORD serial = 0;
    DWORD component_length = 0;
    DWORD flags = 0;
    const BOOL read =
        GetVolumeInformationW(reinterpret_cast<const wchar_t*>(root.utf16()), name.data(),
                              static_cast<DWORD>(name.size()), &serial, &component_length, &flags,
                              file_system.data(), static_cast<DWORD>(file_system.size()));
    return read ? QString::fromWCharArray(name.data()).trimmed() : QString();
}

QString volume_entry(const Volume& volume)
{
    const QString letter = u'(' + volume.root.left(2) + u')';
    return volume.label.isEmpty() ? letter : volume.label + u' ' + letter;
}

QString root_of_entry(const QString& entry)
{
    return entry.right(4).replace(u')', u'/').remove(u'(');
}

QString root_of_path(const QString& path)
{
    return path.left(3);
}

QStringList fallback_roots(const QString& text)
{
    // The beginning of a label may be the name of a directory, but no label holds a colon.
    const bool is_entry = text.endsWith(":)"_L1) && text.indexOf(u':') == text.size() - 2;
    return is_entry ? QStringList{root_of_entry(text)}
                    : QStringList{root_of_path(text), root_of_entry(text)};
}

qsizetype find_entry(const QStringList& entries, const QString& canonical_path)
{
    const QString letter = canonical_path.left(2);
    for (qsizetype i = 0; i < entries.size(); ++i) {
        if (entries[i].contains(letter, Qt::CaseInsensitive)) {
            return i;
        }
    }
    return -1;
}

} // namespace platform
