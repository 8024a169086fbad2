#pragma once

#include <QFile>
#include <QString>

#include <memory>
#include <vector>

namespace platform {

/// A part of a file, in bytes.
struct Stretch
{
    qint64 begin = 0;
    qint64 end = 0;
};

/// A regular file read once from start to end, with a hint to the system, which then reads ahead.
///
/// Opening never waits for a writer: what is no regular file by the time it is opened (a pipe, a
/// socket, a device put in a file's place) counts as a file that cannot be opened. Thinner than
/// QFile, because small files come by the hundred thousand and every call into the system counts.
class SequentialFile final
{
  public:
    /// Answers of read_at_hand() besides those of read().
    static constexpr qint64 would_wait = -2;
    static constexpr qint64 cannot_tell = -3;

    SequentialFile();
    ~SequentialFile();
    Q_DISABLE_COPY_MOVE(SequentialFile)

    /// Opens the file; answers whether it is open now. Call once.
    bool open(const QString& path);

    /// Bytes that the file had when it was opened.
    qint64 size() const { return size_; }

    /// Reads on from this place.
    void seek(qint64 offset);

    /// Reads up to `length` bytes (at most 1 GiB); 0 at the end of the file, -1 on an error.
    qint64 read(char* into, qint64 length);

    /// Reads bytes that are in memory, fewer than wanted where the rest is not. Answers
    /// `would_wait`, without waiting, where the drive has to be asked first, and `cannot_tell`
    /// where the system does not say, or at the end of the file: then read() has to follow, into
    /// the same memory.
    qint64 read_at_hand(char* into, qint64 length);

    /// Whether the byte at this place is in memory already, as far as the system tells without
    /// being slow; true where it does not tell.
    bool is_at_hand(qint64 offset) const;

    /// Asks the drive for a part of the file that will soon be read. Does not wait for the data;
    /// does nothing where the system reads ahead by itself or cannot be asked.
    void fetch(Stretch wanted) const;

    /// The parts of a stretch that are not in memory. None where the system does not tell.
    std::vector<Stretch> absent(Stretch of) const;

    /// Lets the system forget what it holds of a part of the file; what somebody writes stays.
    void give_back(Stretch unneeded) const;

  private:
    struct Pending;

    static constexpr int closed = -1;
    qintptr handle_ = closed;
    qint64 size_ = 0;
    std::unique_ptr<Pending> pending_; ///< a read under way, on systems that know such
};

/// The same for readers that want a QFile, which must be closed: opens a regular file and nothing
/// else, without waiting. Answers whether it is open now.
bool open_regular(QFile& file, const QString& path);

} // namespace platform
