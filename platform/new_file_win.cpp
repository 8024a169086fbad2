#include "platform/new_file.h"

#include <QTemporaryFile>

namespace platform {

bool write_new_file(const QString& path, const QByteArray& bytes)
{
    QTemporaryFile file(path + QStringLiteral(".XXXXXX"));
    // Renaming replaces nothing here. Once it is named, the file is there to stay.
    const bool named =
        file.open() && file.write(bytes) == bytes.size() && file.flush() && file.rename(path);
    file.setAutoRemove(!named);
    return named;
}

} // namespace platform
