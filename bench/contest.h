#pragma once

#include "bench/report.h"

#include <functional>
#include <optional>
#include <vector>

namespace bench {

/// Does a piece of work once and answers the seconds that it took.
using Timed = std::function<double()>;

struct Peer
{
    QString name;
    Timed run;
    std::optional<double> aim; ///< for our time divided by the peer's
};

/// The same work, done by the window and by others.
struct Contest
{
    int line = 0;
    QString work;
    Timed ours;
    std::vector<Peer> peers;
};

/// Calls `round` once to warm up, with false, and then `rounds` times with true: what the warm-up
/// measures does not count.
void for_rounds(const QString& title, int rounds, const std::function<void(bool counts)>& round);

/// Lets the window and each peer work in turn, round after round, so that whatever else the
/// machine does meets all of them alike. Answers a row of the table per peer.
std::vector<Result> run_contest(const Contest& contest, int rounds);

} // namespace bench
