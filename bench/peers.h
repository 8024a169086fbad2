#pragma once

#include "bench/contest.h"

#include <QStringList>

#include <optional>

namespace bench {

/// Runs a program, looked for on the PATH, to its end; what it prints goes nowhere. Answers the
/// seconds that passed from its start to its end. A program that cannot be started or fails ends
/// the measurement: its time would mean nothing.
double run_timed(const QStringList& command);

/// The command that runs a program (which may bring options) over a list of files, in as few
/// starts as the system allows. Writes the list to the file named.
QStringList command_over(const QStringList& program, const QStringList& files,
                         const QString& list_file);

/// Programs that digest small files: one file after another, and several files at a time like the
/// two panes do.
Peer md5sum(const QStringList& files, std::optional<double> aim);
Peer hashdeep(const QStringList& directories);

} // namespace bench
