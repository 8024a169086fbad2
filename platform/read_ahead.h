#pragma once

#include <QString>

namespace platform {

/// What fetch_head() found.
struct Head
{
    qint64 bytes = 0;        ///< that were looked at; 0 for a file that cannot be opened
    bool from_drive = false; ///< some of them were not in memory yet
};

/// Brings the first bytes of a file into memory, for somebody who will open and read it soon. Opens
/// as SequentialFile does, so nothing but a regular file is touched, and has closed it again when
/// it returns. Waits for the file to be opened; for the data only where the system cannot fetch
/// them by itself. Safe in any thread.
Head fetch_head(const QString& path, qint64 at_most);

} // namespace platform
