#pragma once

#include "bench/contest.h"

#include <QStringList>

namespace bench {

/// Leaves nothing of these files in memory, so that the next reader has to wait for the drive.
/// Where this process may (as root), names and the whole rest of the system's cache go as well.
void make_cold(const QStringList& files);

/// The same work or peer, with the files made cold before its clock starts.
Peer cold(const Peer& peer, const QStringList& files);

} // namespace bench
