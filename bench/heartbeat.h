#pragma once

#include <QElapsedTimer>
#include <QTimer>

namespace bench {

/// Asks the thread's event loop for an answer every millisecond and keeps the longest time that it
/// had to wait for one.
class Heartbeat
{
  public:
    /// Starts to beat.
    Heartbeat();

    /// The longest gap between two beats so far, in milliseconds; the time since the last beat
    /// counts.
    double longest_gap() const;

  private:
    void beat();

    QTimer timer_;
    QElapsedTimer since_beat_;
    qint64 longest_ = 0; ///< nanoseconds
};

} // namespace bench
