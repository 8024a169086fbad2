#include "platform/file_manager.h"

#include <QFileInfo>
#include <QProcess>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace platform {

void show_in_file_manager(const QString& path)
{
    // Asking over the bus can take a while, so both attempts run in one shell beside us. The paths
    // are arguments of the shell, never part of its text.
    const QFileInfo info(path);
    const bool directory = info.isDir();
    const QString script =
        u"dbus-send --session --print-reply --reply-timeout=2000 "
        "--dest=org.freedesktop.FileManager1 --type=method_call /org/freedesktop/FileManager1 "
        "org.freedesktop.FileManager1.\"$1\" array:string:\"$2\" string:'' "
        ">/dev/null 2>&1 || exec xdg-open \"$3\" >/dev/null 2>&1"_s;
    const QString folder = directory ? path : info.path();
    // A comma would part the address in two for dbus-send.
    const QString address =
        QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded()).replace(u',', "%2C"_L1);
    QProcess::startDetached(
        u"/bin/sh"_s,
        {u"-c"_s, script, u"sh"_s, directory ? u"ShowFolders"_s : u"ShowItems"_s, address, folder});
}

} // namespace platform
