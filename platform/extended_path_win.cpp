#include "platform/extended_path_win.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace platform {

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

} // namespace platform
