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

  private:
    QRandomGenerator generator_;
};
