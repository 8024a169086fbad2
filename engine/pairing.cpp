#include "engine/pairing.h"

#include <QHash>

#include <utility>

namespace engine {

namespace {

bool same_checksum(const QString& a, const QString& b)
{
    return a == b || a.toLower() == b.toLower();
}

/// For each name, the items of a list that have it, handed out in list order.
class NameIndex
{
  public:
    explicit NameIndex(const QList<PairingItem>& items) : next_(items.size(), end)
    {
        first_.reserve(items.size());
        // From the back, so that every chain runs forward.
        for (qsizetype i = items.size() - 1; i >= 0; --i) {
            next_[i] = std::exchange(first_[items[i].name].item, i);
        }
    }

    /// The first item of that name not yet taken, or -1.
    qsizetype take(const QString& name)
    {
        const auto found = first_.find(name);
        if (found == first_.end() || found->item == end) {
            return end;
        }
        return std::exchange(found->item, next_[found->item]);
    }

  private:
    static constexpr qsizetype end = -1;

    struct Head
    {
        qsizetype item = end;
    };

    QHash<QString, Head> first_;
    QList<qsizetype> next_;
};

} // namespace

PairingResult pair_by_name(const QList<PairingItem>& first, const QList<PairingItem>& second)
{
    PairingResult result{QList<Mark>(first.size(), Mark::None),
                         QList<Mark>(second.size(), Mark::None)};
    QList<bool> taken(second.size(), false);
    NameIndex index(second);

    for (qsizetype a = 0; a < first.size(); ++a) {
        const qsizetype b = index.take(first[a].name);
        if (b < 0) {
            result.first[a] = first[a].checksum.isEmpty() ? Mark::None : Mark::NoPartner;
            continue;
        }
        taken[b] = true;
        if (first[a].checksum.isEmpty() && second[b].checksum.isEmpty() &&
            (first[a].cleared || second[b].cleared)) {
            continue;
        }
        if (same_checksum(first[a].checksum, second[b].checksum)) {
            result.first[a] = result.second[b] = Mark::Identical;
        } else if (!second[b].checksum.isEmpty()) {
            result.first[a] = result.second[b] = Mark::Different;
        }
    }
    for (qsizetype b = 0; b < second.size(); ++b) {
        if (!taken[b] && !second[b].checksum.isEmpty()) {
            result.second[b] = Mark::NoPartner;
        }
    }
    return result;
}

} // namespace engine
