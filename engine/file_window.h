#pragma once

#include "platform/sequential_file.h"

#include <QByteArray>

#include <vector>

namespace engine {

/// The part of a large file around the place where somebody is reading it from the drive. What
/// comes next is read before the reader comes to it, so that drive and processor work at the same
/// time. What came from the drive and has been used is given back, so that a job of many gigabytes
/// does not push everything else out of memory; what was in memory before stays there.
///
/// It opens the file once more, so that the reader need not be waited for. Belongs to one thread at
/// a time, which is not the reader's.
class FileWindow final
{
  public:
    explicit FileWindow(const QString& path);

    /// Gives back what is left.
    ~FileWindow();
    Q_DISABLE_COPY_MOVE(FileWindow)

    /// The reader has come to this place.
    void move_to(qint64 offset);

    /// Reads a block more; answers whether there is something left to read before the reader has
    /// to move.
    bool read_on();

    /// The least distance that is worth moving.
    static constexpr qint64 step = 0x100000;

  private:
    void look_ahead();
    void give_back(qint64 until);

    platform::SequentialFile file_;
    QByteArray block_; ///< what is read into it serves nobody
    qint64 reader_ = 0;
    qint64 ahead_ = 0; ///< everything before this place has been read
    qint64 given_back_ = 0;
    qint64 looked_ = 0;                     ///< absent_ is known up to this place
    std::vector<platform::Stretch> absent_; ///< were not in memory; without what was given back
};

} // namespace engine
