#include "platform/read_ahead.h"

#include "platform/sequential_file.h"

#include <QByteArray>

#include <algorithm>

namespace platform {

Head fetch_head(const QString& path, qint64 at_most)
{
    // There is no asking without waiting, but whoever calls this has a thread for it.
    SequentialFile file;
    if (!file.open(path) || file.size() == 0) {
        return {};
    }
    Head head{std::min(file.size(), at_most), false};
    constexpr qint64 block_size = 0x10000;
    QByteArray block(block_size, Qt::Uninitialized);
    for (qint64 total = 0; total < head.bytes;) {
        qint64 got = file.read_at_hand(block.data(), block_size);
        if (got < 0) {
            head.from_drive = head.from_drive || got == SequentialFile::would_wait;
            got = file.read(block.data(), block_size);
        }
        if (got <= 0) {
            break;
        }
        total += got;
    }
    return head;
}

} // namespace platform
