#include "bench/heartbeat.h"

#include <algorithm>
#include <chrono>

namespace bench {

Heartbeat::Heartbeat()
{
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { beat(); });
    since_beat_.start();
    timer_.start(std::chrono::milliseconds(1));
}

void Heartbeat::beat()
{
    longest_ = std::max(longest_, since_beat_.nsecsElapsed());
    since_beat_.start();
}

double Heartbeat::longest_gap() const
{
    return static_cast<double>(std::max(longest_, since_beat_.nsecsElapsed())) / 1e6;
}

} // namespace bench
