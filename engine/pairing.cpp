#include "engine/pairing.h"

#include <utility>

namespace engine {

namespace {

bool same_checksum(const QString& a, const QString& b)
{
    return a == b || a.toLower() == b.toLower();
}

} // namespace

Pairing::Pairing(Items first, Items second)
    : first_(std::move(first)),
      second_(std::move(second)), result_{QList<Mark>(first_.count, Mark::None),
                                          QList<Mark>(second_.count, Mark::None)}
{}

bool Pairing::advance(qsizetype items)
{
    for (; items > 0 && phase_ != Phase::Done; --items) {
        step();
    }
    return phase_ == Phase::Done;
}

void Pairing::step()
{
    switch (phase_) {
    case Phase::SameOrder:
        return pair_in_same_order();
    case Phase::Index:
        return index_one();
    case Phase::Search:
        return search_one();
    case Phase::Rest:
        return mark_rest();
    case Phase::Done:
        return;
    }
}

// As long as every item before has taken its counterpart, the next one of the second list is the
// first that is left, of whatever name.
void Pairing::pair_in_same_order()
{
    if (paired_ < first_.count && paired_ < second_.count) {
        const PairingItem first = first_.at(paired_);
        if (first.name == second_.at(paired_).name) {
            judge(paired_, first, paired_);
            ++paired_;
            return;
        }
    }
    first_of_name_.reserve(second_.count - paired_);
    next_of_name_.fill(nowhere, second_.count);
    taken_.fill(false, second_.count);
    position_ = second_.count;
    phase_ = Phase::Index;
}

// From the back, so that every chain runs forward.
void Pairing::index_one()
{
    if (position_ == paired_) {
        phase_ = Phase::Search;
        return;
    }
    --position_;
    Head& head = first_of_name_[second_.at(position_).name];
    next_of_name_[position_] = std::exchange(head.item, position_);
}

void Pairing::search_one()
{
    if (position_ == first_.count) {
        position_ = paired_;
        phase_ = Phase::Rest;
        return;
    }
    const qsizetype a = position_++;
    const PairingItem first = first_.at(a);
    const auto found = first_of_name_.find(first.name);
    if (found == first_of_name_.end() || found->item == nowhere) {
        result_.first[a] = first.checksum.isEmpty() ? Mark::None : Mark::NoPartner;
        return;
    }
    const qsizetype b = std::exchange(found->item, next_of_name_[found->item]);
    taken_[b] = true;
    judge(a, first, b);
}

void Pairing::judge(qsizetype a, const PairingItem& first, qsizetype b)
{
    const PairingItem second = second_.at(b);
    if (first.checksum.isEmpty() && second.checksum.isEmpty() &&
        (first.cleared || second.cleared)) {
        return;
    }
    if (same_checksum(first.checksum, second.checksum)) {
        result_.first[a] = result_.second[b] = Mark::Identical;
    } else if (!second.checksum.isEmpty()) {
        result_.first[a] = result_.second[b] = Mark::Different;
    }
}

void Pairing::mark_rest()
{
    if (position_ == second_.count) {
        phase_ = Phase::Done;
        return;
    }
    const qsizetype b = position_++;
    if (!taken_[b] && !second_.at(b).checksum.isEmpty()) {
        result_.second[b] = Mark::NoPartner;
    }
}

} // namespace engine
