#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace bench {

/// What one of the two sides of a comparison needed, a value per round.
struct Side
{
    QString name;
    QString unit;
    std::vector<double> values;
};

/// One row of the table.
struct Result
{
    int line = 0; ///< of the table of aims
    QString work;
    QString unit; ///< of the figure; none for a ratio
    std::vector<double> figures;
    std::optional<double> aim; ///< the largest median wanted; none for information only
    Side ours;
    Side other; ///< without values when the figure stands for itself
};

/// The row as Markdown, in the order of the columns that bench/run prints above.
QString table_row(const Result& result);

/// Tells on the standard error stream how far the measurement is.
void show_progress(const QString& text);

} // namespace bench
