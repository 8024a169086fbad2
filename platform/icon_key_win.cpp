#include "platform/icon_key.h"

#include <QFileInfo>
#include <QSet>

using namespace Qt::StringLiterals;

namespace platform {

QString file_icon_key(const QString& path)
{
    static const QSet<QString> own_icon = {u"exe"_s, u"ico"_s, u"lnk"_s,
                                           u"url"_s, u"cur"_s, u"ani"_s};
    const QString suffix = QFileInfo(path).suffix().toLower();
    return own_icon.contains(suffix) ? path : suffix;
}

} // namespace platform
