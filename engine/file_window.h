#pragma once

#include "platform/sequential_file.h"

#include <vector>

namespace engine {

/// The part of a file around the digest of somebody who reads it from the drive: what comes next is
/// asked for early, so that drive and processor work at the same time; what came from the drive and
/// is digested is given back, so that a job of many gigabytes does not push everything else out of
/// memory. What was in memory before stays there.
class FileWindow final
{
  public:
    /// The file must outlive the window and be open.
    explicit FileWindow(const platform::SequentialFile& file) : file_(file) {}

    /// Gives back what is left.
    ~FileWindow();
    Q_DISABLE_COPY_MOVE(FileWindow)

    /// Everything before this place is digested, the rest is going to be read.
    void move_to(qint64 offset);

  private:
    void look_ahead();
    void give_back(qint64 until);

    const platform::SequentialFile& file_;
    qint64 digested_ = 0;
    qint64 given_back_ = 0;
    qint64 asked_ = 0;  ///< the drive was asked for everything before this place
    qint64 looked_ = 0; ///< absent_ is known up to this place
    std::vector<platform::Stretch> absent_; ///< were not in memory; without what was given back
};

} // namespace engine
