#pragma once

#include <QStringList>

namespace bench {

/// Runs a program, looked for on the PATH, to its end; what it prints goes nowhere. Answers the
/// seconds that passed from its start to its end. A program that cannot be started or fails ends
/// the measurement: its time would mean nothing.
double run_timed(const QStringList& command);

/// The command that runs a program (which may bring options) over a list of files, in as few
/// starts as the system allows. Writes the list to the file named.
QStringList command_over(const QStringList& program, const QStringList& files,
                         const QString& list_file);

} // namespace bench
