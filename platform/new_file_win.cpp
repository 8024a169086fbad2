#include "platform/new_file.h"

#include <QFileInfo>
#include <QTemporaryFile>

using namespace Qt::StringLiterals;

namespace platform {

bool write_new_file(const QString& path, const QByteArray& bytes)
{
    // A short name, because that of the file itself may be as long as names can be.
    QTemporaryFile file(QFileInfo(path).path() + "/.Tavrel-XXXXXX"_L1);
    // Renaming replaces nothing here. Once it is named, the file is there to stay.
    const bool named =
        file.open() && file.write(bytes) == bytes.size() && file.flush() && file.rename(path);
    file.setAutoRemove(!named);
    return named;
}

} // namespace platform
