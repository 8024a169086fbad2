#pragma once

#include <QByteArray>
#include <QString>

namespace platform {

/// Creates a file that holds these bytes, whole or not at all. False when there is one of that name
/// already, or when it cannot be created and written to its end; nothing is left behind then. The
/// system writes it to the medium when it likes: to wait for that takes longer than all the rest,
/// and is worth it for few files only. Safe in any thread.
bool write_new_file(const QString& path, const QByteArray& bytes);

} // namespace platform
