#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <functional>

namespace engine {

/// What a comparison says of one row.
enum class Mark : quint8 {
    None,      ///< nothing to say
    Identical, ///< same name and same checksum in the other pane
    Different, ///< same name, other checksum
    NoPartner, ///< no row of that name was left to pair with
    Cleared,   ///< an earlier verdict was taken back
};

/// A hashed row as the pairing sees it.
struct PairingItem
{
    QString name;
    QString checksum;     ///< the text of the checksum column, whatever it holds
    bool cleared = false; ///< there was a checksum, and it was taken back
};

/// The verdicts, in the order of the lists that were paired.
struct PairingResult
{
    QList<Mark> first;
    QList<Mark> second;
};

/// Pairs two lists by name and compares the checksums without regard to case.
///
/// Each item of the first list, in order, takes the first item of the second that has the same name
/// (case-sensitive) and no partner yet. Equal checksums make the pair Identical; others make it
/// Different, unless the second's is empty, which leaves both unmarked. Two
/// empty ones of which one was taken back say nothing of the files, and mark nothing. Items without
/// a partner are NoPartner when they have a checksum. Costs time in proportion to the lists'
/// lengths, and can be done in portions. Copies are usually listed in the same order: as far as the
/// lists have the same names, partners need no search.
class Pairing final
{
  public:
    /// A list: how many items, and what each is. It is asked from within advance(), more than once.
    struct Items
    {
        qsizetype count = 0;
        std::function<PairingItem(qsizetype)> at;
    };

    Pairing(Items first, Items second);

    /// Does the work of so many items; answers whether all is done.
    bool advance(qsizetype items);

    /// The verdicts, once all is done.
    const PairingResult& result() const { return result_; }

  private:
    enum class Phase { SameOrder, Index, Search, Rest, Done };

    static constexpr qsizetype nowhere = -1;

    struct Head
    {
        qsizetype item = nowhere;
    };

    void step();
    void pair_in_same_order();
    void index_one();
    void search_one();
    void mark_rest();
    void judge(qsizetype a, const PairingItem& first, qsizetype b);

    Items first_;
    Items second_;
    PairingResult result_;
    Phase phase_ = Phase::SameOrder;
    qsizetype position_ = 0;             ///< in the list that the phase goes through
    qsizetype paired_ = 0;               ///< that many first items of both lists are partners
    QHash<QString, Head> first_of_name_; ///< in the second list, of those not yet taken
    QList<qsizetype> next_of_name_;      ///< the one of the same name after each of them
    QList<bool> taken_;                  ///< of the second list, behind the first paired_ ones
};

} // namespace engine
