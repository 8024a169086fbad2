#pragma once

#include "engine/digest.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <stop_token>

namespace platform {
class SequentialFile;
}

namespace engine {

/// How the hashing of one file ended.
enum class FileOutcome : quint8 {
    Digested,   ///< the digest is there
    Unreadable, ///< the file could not be opened or not read to its end, or has no digest
    Stopped,    ///< the flag was raised before the end
};

/// Outcome and, when Digested, the lowercase hexadecimal digest.
struct FileResult
{
    FileOutcome outcome = FileOutcome::Stopped;
    QString digest;
};

/// Hashes files one after another with one digest and one block buffer (256 KiB), whatever their
/// sizes. Belongs to one thread at a time.
class FileHasher final
{
  public:
    /// What the hashing of a file tells on its way.
    struct Listener
    {
        std::function<void()> opened;              ///< the file is open, reading begins
        std::function<void(int percent)> progress; ///< a new whole percentage, 0 to 100
        std::function<void()> waiting = {};        ///< data is not in memory; told once for a file
        std::function<void(qint64 read)> reading = {}; ///< so many bytes are; after waiting, and
                                                       ///< while there are more
    };

    FileHasher(QCryptographicHash::Algorithm algorithm, std::stop_token stop);

    /// Reads the file to its end and returns its digest. A file that can be read in part only has
    /// none: the digest of that part would pass for the file's own. The percentage follows the size
    /// the file had when it was opened; a file that reported no size tells none. The flag is looked
    /// at before every block.
    FileResult hash(const QString& path, const Listener& listener);

  private:
    qint64 read_at_hand(platform::SequentialFile& file, qint64 at);

    Digest digest_;
    std::stop_token stop_;
    QByteArray block_;
    int untold_ = 0; ///< blocks of which the system did not tell whether they are in memory
};

} // namespace engine
