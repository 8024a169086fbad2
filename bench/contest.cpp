#include "bench/contest.h"

using namespace Qt::StringLiterals;

namespace bench {

void for_rounds(const QString& title, int rounds, const std::function<void(bool counts)>& round)
{
    show_progress(title + u": warm-up"_s);
    round(false);
    for (int i = 1; i <= rounds; ++i) {
        show_progress(u"%1: round %2 of %3"_s.arg(title).arg(i).arg(rounds));
        round(true);
    }
}

std::vector<Result> run_contest(const Contest& contest, int rounds)
{
    constexpr double milliseconds = 1000;
    std::vector<Result> results;
    for (const Peer& peer : contest.peers) {
        results.push_back({contest.line,
                           contest.work,
                           {},
                           {},
                           peer.aim,
                           {u"Tavrel"_s, u"ms"_s, {}},
                           {peer.name, u"ms"_s, {}}});
    }
    for_rounds(contest.work, rounds, [&](bool counts) {
        const double ours = contest.ours();
        for (size_t i = 0; i < results.size(); ++i) {
            const double other = contest.peers[i].run();
            if (counts) {
                results[i].ours.values.push_back(ours * milliseconds);
                results[i].other.values.push_back(other * milliseconds);
                results[i].figures.push_back(ours / other);
            }
        }
    });
    return results;
}

} // namespace bench
