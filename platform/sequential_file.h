#pragma once

#include <QFile>
#include <QString>

namespace platform {

/// Opens a regular file for one pass from start to end and tells the system so, which then reads
/// ahead. Never waits for a writer: what is no regular file by the time it is opened (a pipe, a
/// socket, a device put in a file's place) counts as a file that cannot be opened.
///
/// `file` must be closed; returns whether it is open now.
bool open_sequential(QFile& file, const QString& path);

} // namespace platform
