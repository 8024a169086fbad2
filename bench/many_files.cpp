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
    const int few = scale.few_files;
    const int many = scale.many_files;
    const auto of = [](int files) { return u"of %1 files"_s.arg(files); };
    Result growth{8,
                  u"HashAll(), cost per file: "_s + of(many),
                  {},
                  {},
                  1.2,
                  {of(many), u"µs"_s, {}},
                  {of(few), u"µs"_s, {}}};
    for_rounds(growth.work, scale.rounds, [&](bool counts) {
        constexpr int windows_of_few = 20;
        const double cost_of_few = cost_per_file(data.flat(few), few, windows_of_few);
        const double cost_of_many = cost_per_file(data.flat(many), many, 1);
        show_progress(u"  %1 µs and %2 µs"_s.arg(cost_of_few).arg(cost_of_many));
        if (counts) {
            growth.ours.values.push_back(cost_of_many);
            growth.other.values.push_back(cost_of_few);
            growth.figures.push_back(cost_of_many / cost_of_few);
        }
    });
    // The system's own cost per file grows with their number, too: so others measure the most.
    const QString directory = data.flat(scale.most_files);
    std::vector<Result> results = {growth};
    const auto most = run_contest({8,
                                   u"HashAll(), %1 files"_s.arg(scale.most_files),
                                   [&] { return time_hash_all(directory, scale.most_files); },
                                   {md5sum(files_below(directory), 1.2)}},
                                  scale.rounds);
    results.insert(results.end(), most.begin(), most.end());
    return results;
}

} // namespace bench
