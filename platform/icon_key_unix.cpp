#include "platform/icon_key.h"

#include <QFileInfo>

namespace platform {

QString file_icon_key(const QString& path)
{
    return QFileInfo(path).suffix().toLower();
}

} // namespace platform
