#include "platform/read_ahead.h"

#include "platform/sequential_file.h"

#include <algorithm>

namespace platform {

namespace {

/// Whether the next byte of the file is missing in memory. Looking reads it if it is there.
bool misses_first_byte(SequentialFile& file)
{
    char byte = 0;
    const qint64 answer = file.read_at_hand(&byte, 1);
    return answer == SequentialFile::would_wait ||
           (answer == SequentialFile::cannot_tell && !file.is_at_hand(0));
}

} // namespace

Head fetch_head(const QString& path, qint64 at_most)
{
    SequentialFile file;
    if (!file.open(path) || file.size() == 0) {
        return {};
    }
    Head head{std::min(file.size(), at_most), misses_first_byte(file)};
    // File managers read the first page of everything they show, to name its type: of a file that
    // is longer, one page says nothing of the others.
    constexpr qint64 read_by_file_managers = 0x4000;
    if (head.from_drive || head.bytes > read_by_file_managers) {
        head.from_drive = head.from_drive || !file.is_at_hand(head.bytes - 1);
        file.fetch({0, head.bytes});
    }
    return head;
}

} // namespace platform
