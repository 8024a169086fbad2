#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace engine {

/// Parts the bytes of a file, which come in blocks, into lines that end at a line feed. Lines that
/// are longer than the limit are dropped, and no more than one line is ever kept.
///
///     splitter.feed(block);
///     for (QByteArrayView line; splitter.next(line);) ...
class LineSplitter final
{
  public:
    /// `longest` is the limit, in bytes.
    explicit LineSplitter(qsizetype longest) : longest_(longest) {}

    /// Takes the next block, which must stay as it is until the next call.
    void feed(QByteArrayView block);

    /// The next line that ends in the block, without its end; it is good until the next call. False
    /// when the block holds no more line ends.
    bool next(QByteArrayView& line);

    /// What follows the last line end, after the last block.
    QByteArrayView rest() const { return begin_; }

  private:
    void keep(QByteArrayView part);

    qsizetype longest_;
    QByteArrayView block_;
    QByteArray begin_;      ///< of a line that began in an earlier block
    bool too_long_ = false; ///< that line is; nothing of it is kept
    bool given_ = false;    ///< begin_ is the line that next() gave last
};

} // namespace engine
