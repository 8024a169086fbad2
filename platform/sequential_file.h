#pragma once

#include <QFile>
#include <QString>

namespace platform {

/// A regular file read once from start to end, with a hint to the system, which then reads ahead.
///
/// Opening never waits for a writer: what is no regular file by the time it is opened (a pipe, a
/// socket, a device put in a file's place) counts as a file that cannot be opened. Thinner than
/// QFile, because small files come by the hundred thousand and every call into the system counts.
class SequentialFile final
{
  public:
    SequentialFile() = default;
    ~SequentialFile();
    Q_DISABLE_COPY_MOVE(SequentialFile)

    /// Opens the file; answers whether it is open now. Call once.
    bool open(const QString& path);

    /// Bytes that the file had when it was opened.
    qint64 size() const { return size_; }

    /// Reads up to `length` bytes (at most 1 GiB); 0 at the end of the file, -1 on an error.
    qint64 read(char* into, qint64 length);

  private:
    static constexpr int closed = -1;
    int descriptor_ = closed;
    qint64 size_ = 0;
};

/// The same for readers that want a QFile, which must be closed: opens a regular file and nothing
/// else, without waiting. Answers whether it is open now.
bool open_regular(QFile& file, const QString& path);

} // namespace platform
