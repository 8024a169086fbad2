#pragma once

#include <QRandomGenerator>

/// All chance of a run comes from one generator, so that a seed names a run.
class Dice final
{
  public:
    explicit Dice(quint32 seed) : generator_(seed) {}

    /// A number from 0 to n - 1.
    int below(int n) { return static_cast<int>(generator_.bounded(static_cast<quint32>(n))); }

    bool chance(int percent) { return below(100) < percent; }

    /// One element of a list that is not empty.
    template<class List>
    const auto& pick(const List& list)
    {
        return list[below(static_cast<int>(list.size()))];
    }

    /// One of pairs of a weight and a thing: that thing, as often as its weight says.
    template<class List>
    auto weigh(const List& list)
    {
        int total = 0;
        for (const auto& [weight, thing] : list) {
            total += weight;
        }
        int number = below(total);
        for (const auto& [weight, thing] : list) {
            number -= weight;
            if (number < 0) {
                return thing;
            }
        }
        Q_UNREACHABLE();
    }

  private:
    QRandomGenerator generator_;
};
