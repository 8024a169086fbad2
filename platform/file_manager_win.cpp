#include "platform/file_manager.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace platform {

void show_in_file_manager(const QString& path)
{
    QStringList arguments;
    if (!QFileInfo(path).isDir()) {
        arguments.append(u"/select,"_s);
    }
    arguments.append(QDir::toNativeSeparators(path));
    QProcess::startDetached(u"explorer"_s, arguments);
}

} // namespace platform
