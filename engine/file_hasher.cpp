#include "engine/file_hasher.h"

#include "platform/sequential_file.h"

#include <algorithm>

namespace engine {

namespace {

constexpr qint64 block_size = 0x40000;

using File = platform::SequentialFile;

// Where the system does not tell with the read itself whether data is in memory, finding out is
// slow: then one block in so many speaks for all.
constexpr int spoken_for = 16;

/// Percent of `size` that `total` is. A file that grows while it is read stays at 100.
int percent_of(qint64 total, qint64 size)
{
    return static_cast<int>(std::min<qint64>(100, total * 100 / size));
}

/// Tells a listener that may not want to know.
template<class... Values>
void tell(const std::function<void(Values...)>& listener, Values... values)
{
    if (listener) {
        listener(values...);
    }
}

} // namespace

FileHasher::FileHasher(QCryptographicHash::Algorithm algorithm, std::stop_token stop)
    : digest_(algorithm), stop_(std::move(stop)), block_(block_size, Qt::Uninitialized)
{}

FileResult FileHasher::hash(const QString& path, const Listener& listener)
{
    platform::SequentialFile file;
    if (!file.open(path)) {
        return {FileOutcome::Unreadable, {}};
    }
    const qint64 size = file.size();
    listener.opened();
    digest_.reset();

    int shown = -1;
    bool waits = false;
    for (qint64 total = 0; !stop_.stop_requested();) {
        const bool know_enough = waits || total >= size;
        qint64 read = know_enough ? File::cannot_tell : read_at_hand(file, total);
        if (read == File::would_wait) {
            waits = true;
            tell(listener.waiting);
        }
        if (waits && total + block_size < size) {
            tell(listener.reading, total);
        }
        if (read < 0) {
            read = file.read(block_.data(), block_size);
        }
        if (read < 0) {
            return {FileOutcome::Unreadable, {}};
        }
        if (read == 0) {
            break;
        }
        total += read;
        digest_.add(QByteArrayView(block_.constData(), read));
        const int percent = size > 0 ? percent_of(total, size) : shown;
        if (percent != shown) {
            shown = percent;
            listener.progress(percent);
        }
    }
    if (stop_.stop_requested()) {
        listener.progress(100);
        return {FileOutcome::Stopped, {}};
    }
    const QByteArray digest = digest_.result_hex();
    return {digest.isEmpty() ? FileOutcome::Unreadable : FileOutcome::Digested,
            QString::fromLatin1(digest)};
}

qint64 FileHasher::read_at_hand(File& file, qint64 at)
{
    const qint64 read = file.read_at_hand(block_.data(), block_size);
    if (read == File::cannot_tell && untold_++ % spoken_for == 0 && !file.is_at_hand(at)) {
        return File::would_wait;
    }
    return read;
}

} // namespace engine
