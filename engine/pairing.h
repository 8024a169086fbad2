#pragma once

#include <QList>
#include <QString>

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
/// Each item of `first`, in order, takes the first item of `second` that has the same name
/// (case-sensitive) and no partner yet. Equal checksums make the pair Identical; others make it
/// Different, unless the second's is empty, which leaves both unmarked. Two
/// empty ones of which one was taken back say nothing of the files, and mark nothing. Items without
/// a partner are NoPartner when they have a checksum. Costs time in proportion to the lists'
/// lengths.
PairingResult pair_by_name(const QList<PairingItem>& first, const QList<PairingItem>& second);

} // namespace engine
