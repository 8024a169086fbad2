// Files so small and many that what is done for each of them counts.

#include "bench/bench_window.h"
#include "bench/contest.h"
#include "bench/lines.h"
#include "bench/peers.h"
#include "tree/mytreewidget.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

Peer md5sum(const QStringList& files, double aim)
{
    const QString list_file = QDir::current().filePath(u"files.list"_s);
    const QStringList command = command_over({u"md5sum"_s}, files, list_file);
    return {u"`md5sum`"_s, [command] { return run_timed(command); }, aim};
}

// It works on several files at a time, like the two panes do.
Peer hashdeep(const QStringList& directories)
{
    const QStringList command = QStringList{u"hashdeep"_s, u"-c"_s, u"md5"_s, u"-r"_s}
                                << directories;
    return {u"`hashdeep -c md5 -r`"_s, [command] { return run_timed(command); }, {}};
}

double time_hash_all(const QString& directory, int files)
{
    BenchWindow window;
    window.open(directory);
    const double seconds = window.hash_all();
    window.expect_hashed(files);
    return seconds;
}

/// Microseconds per file, the mean of several windows: one small directory takes no longer than
/// the machine's hiccups.
double cost_per_file(const QString& directory, int files, int windows)
{
    double seconds = 0;
    for (int i = 0; i < windows; ++i) {
        seconds += time_hash_all(directory, files);
    }
    return seconds * 1e6 / files / windows;
}

void record(Result& result, double ours, double other)
{
    result.ours.values.push_back(ours);
    result.other.values.push_back(other);
    result.figures.push_back(ours / other);
}

} // namespace

std::vector<Result> hash_directory(const Data& data, const Scale& scale)
{
    const QString directory = data.flat(scale.files);
    return run_contest({3,
                        u"HashAll(), %1 files"_s.arg(scale.files),
                        [&] { return time_hash_all(directory, scale.files); },
                        {md5sum(files_below(directory), 1.2)}},
                       scale.rounds);
}

std::vector<Result> compare_directories(const Data& data, const Scale& scale)
{
    const QString first = data.flat(scale.files, u'a');
    const QString second = data.flat(scale.files, u'b');
    const auto ours = [&] {
        BenchWindow window;
        window.open(first, second);
        const double seconds = window.compare_all();
        window.expect_identical(scale.files);
        return seconds;
    };
    return run_contest(
        {4,
         u"\"Comparer Tout\", two directories of %1 files"_s.arg(scale.files),
         ours,
         {md5sum(files_below(first) + files_below(second), 0.9), hashdeep({first, second})}},
        scale.rounds);
}

std::vector<Result> hash_nested_directory(const Data& data, const Scale& scale)
{
    const QString directory = data.nested(scale.files, scale.directories);
    const auto ours = [&] {
        BenchWindow window;
        window.open(directory);
        window.first().select_by_name(Data::nested_name());
        const double seconds = window.hash_selection();
        window.expect_hashed(scale.files);
        return seconds;
    };
    return run_contest({7,
                        u"HashThis(), %1 files in %2 unexpanded subdirectories"_s.arg(scale.files)
                            .arg(scale.directories),
                        ours,
                        {md5sum(files_below(directory), 1.5), hashdeep({directory})}},
                       scale.rounds);
}

std::vector<Result> grow_directory(const Data& data, const Scale& scale)
{
    constexpr double aim = 1.2;
    const auto row = [&](const QString& ours, const QString& other) {
        return Result{8,
                      u"HashAll(), cost per file: "_s + ours,
                      {},
                      {},
                      aim,
                      {ours, u"µs"_s, {}},
                      {other, u"µs"_s, {}}};
    };
    const auto of = [](int files) { return u"of %1 files"_s.arg(files); };
    Result growth = row(of(scale.growing.back()), of(scale.growing.front()));
    Result spread = row(u"the costliest size"_s, u"the cheapest size"_s);
    for_rounds(growth.work, scale.rounds, [&](bool counts) {
        std::vector<double> costs;
        QStringList shown;
        for (const int files : scale.growing) {
            constexpr int enough_windows = 20;
            const int windows = std::min(enough_windows, scale.growing.back() / files);
            costs.push_back(cost_per_file(data.flat(files), files, windows));
            shown.append(u"%1 µs of %2"_s.arg(costs.back(), 0, 'f', 2).arg(files));
        }
        show_progress(u"  "_s + shown.join(u", "_s));
        const auto [cheapest, costliest] = std::minmax_element(costs.begin(), costs.end());
        if (counts) {
            record(growth, costs.back(), costs.front());
            record(spread, *costliest, *cheapest);
        }
    });
    return {growth, spread};
}

} // namespace bench
