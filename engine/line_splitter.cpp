#include "engine/line_splitter.h"

#include <utility>

namespace engine {

void LineSplitter::feed(QByteArrayView block)
{
    block_ = block;
}

bool LineSplitter::next(QByteArrayView& line)
{
    for (;;) {
        if (std::exchange(given_, false)) {
            begin_.clear();
        }
        const qsizetype end = block_.indexOf('\n');
        if (end < 0) {
            keep(std::exchange(block_, {}));
            return false;
        }
        const QByteArrayView part = block_.first(end);
        block_ = block_.sliced(end + 1);
        if (begin_.isEmpty() && !too_long_ && end <= longest_) {
            line = part;
            return true;
        }
        keep(part);
        given_ = true;
        if (!std::exchange(too_long_, false)) {
            line = begin_;
            return true;
        }
    }
}

void LineSplitter::keep(QByteArrayView part)
{
    too_long_ = too_long_ || begin_.size() + part.size() > longest_;
    if (too_long_) {
        begin_.clear();
    } else {
        begin_ += part;
    }
}

} // namespace engine
