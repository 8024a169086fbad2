#include "bench/report.h"

#include <QStringList>
#include <QTextStream>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// With as many decimals as leave three or four digits.
QString number(double value)
{
    const int decimals = value < 10 ? 3 : value < 100 ? 1 : 0;
    return QString::number(value, 'f', decimals);
}

QString spread(const std::vector<double>& values, const QString& unit)
{
    const auto [min, max] = std::minmax_element(values.begin(), values.end());
    const QString middle = number(median(values)) + (unit.isEmpty() ? unit : u' ' + unit);
    return u"%1 (%2 to %3)"_s.arg(middle, number(*min), number(*max));
}

QString verdict(const Result& result)
{
    if (!result.aim) {
        return u"-"_s;
    }
    const bool met = median(result.figures) <= *result.aim;
    return u"%1: %2"_s.arg(QString::number(*result.aim), met ? u"met"_s : u"**missed**"_s);
}

} // namespace

QString table_row(const Result& result)
{
    const bool compared = !result.other.values.empty();
    const QStringList cells = {
        QString::number(result.line),
        result.work,
        compared ? result.other.name : u"-"_s,
        spread(result.figures, result.unit),
        verdict(result),
        spread(result.ours.values, result.ours.unit),
        compared ? spread(result.other.values, result.other.unit) : u"-"_s,
    };
    return u"| %1 |"_s.arg(cells.join(u" | "_s));
}

void show_progress(const QString& text)
{
    QTextStream(stderr) << "    " << text << Qt::endl;
}

} // namespace bench
