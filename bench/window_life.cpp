// The window itself: its start, its listings, its rows and its answers.

#include "bench/bench_window.h"
#include "bench/contest.h"
#include "bench/heartbeat.h"
#include "bench/lines.h"
#include "bench/peers.h"
#include "engine/listing.h"
#include "tree/mytreewidget.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

QString program(const QString& name)
{
    return QDir(QCoreApplication::applicationDirPath()).filePath(name);
}

template<class Work>
double seconds_of(Work work)
{
    QElapsedTimer clock;
    clock.start();
    work();
    return static_cast<double>(clock.nsecsElapsed()) / 1e9;
}

/// The largest memory that this process has held so far, in bytes.
qint64 peak_memory()
{
    QFile status(u"/proc/self/status"_s);
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith("VmHWM:")) {
                return line.simplified().split(' ').value(1).toLongLong() * 1024;
            }
        }
    }
    qFatal("the system does not tell the memory of a process");
}

/// The same of a process of its own that shows these directories and compares them.
double peak_memory_with(const QString& first, const QString& second)
{
    QFile output(QDir::current().filePath(u"peak"_s));
    run_timed({program(u"tavrel_bench"_s), u"--peak-memory"_s, output.fileName(), first, second});
    const bool readable = output.open(QIODevice::ReadOnly);
    return readable ? output.readAll().toDouble() : 0;
}

struct Silence
{
    int line = 0;
    int files = 0;  ///< on each side
    double aim = 0; ///< milliseconds
};

std::vector<Result> longest_silence(const Data& data, const Silence& line, int rounds)
{
    const QString first = data.flat(line.files, u'a');
    const QString second = data.flat(line.files, u'b');
    Result result{
        line.line,
        u"Longest silence, listing and comparing two directories of %1 files"_s.arg(line.files),
        u"ms"_s,
        {},
        line.aim,
        {u"Tavrel"_s, u"ms"_s, {}},
        {}};
    for_rounds(result.work, rounds, [&](bool counts) {
        BenchWindow window;
        const Heartbeat heartbeat;
        settle();
        window.open(first, second);
        const double listing = heartbeat.longest_gap();
        window.compare_all();
        settle();
        const double longest = heartbeat.longest_gap();
        window.expect_identical(line.files);
        show_progress(u"  %1 ms while listing, %2 ms in all"_s.arg(listing).arg(longest));
        if (counts) {
            result.figures.push_back(longest);
            result.ours.values.push_back(longest);
        }
    });
    return {result};
}

} // namespace

std::vector<Result> keep_answering(const Data& data, const Scale& scale)
{
    return longest_silence(data, {5, scale.files, 33}, scale.rounds);
}

std::vector<Result> keep_answering_at_any_size(const Data& data, const Scale& scale)
{
    return longest_silence(data, {18, scale.most_files, 100}, scale.rounds);
}

std::vector<Result> list_directory(const Data& data, const Scale& scale)
{
    const QString directory = data.flat(scale.listed_files);
    const auto ours = [&] {
        const BenchWindow window;
        MyTreeWidget& pane = window.first();
        const double seconds = seconds_of([&] { pane.changeModel(directory); });
        if (pane.topLevelItemCount() != scale.listed_files + 1) {
            qFatal("the pane shows %d rows", pane.topLevelItemCount());
        }
        return seconds;
    };
    const auto bare = [&] {
        const QDir dir(directory, QString(), QDir::Name | QDir::DirsFirst | QDir::LocaleAware,
                       engine::shown_entries);
        return seconds_of([&] { dir.entryInfoList(); });
    };
    return run_contest({6,
                        u"changeModel(), %1 files"_s.arg(scale.listed_files),
                        ours,
                        {{u"`QDir::entryInfoList()`"_s, bare, 2}}},
                       scale.rounds);
}

std::vector<Result> hold_rows(const Data& data, const Scale& scale)
{
    constexpr double mebibyte = 1 << 20;
    Result result{9,
                  u"Peak memory per row, 2 x %1 rows hashed and compared"_s.arg(scale.listed_files),
                  u"bytes"_s,
                  {},
                  1500,
                  {u"Tavrel"_s, u"MiB"_s, {}},
                  {u"its window without rows"_s, u"MiB"_s, {}}};
    const QString first = data.flat(scale.listed_files, u'a');
    const QString second = data.flat(scale.listed_files, u'b');
    for_rounds(result.work, scale.rounds, [&](bool counts) {
        const double full = peak_memory_with(first, second);
        const double empty = peak_memory_with(data.empty(u'a'), data.empty(u'b'));
        if (counts) {
            result.ours.values.push_back(full / mebibyte);
            result.other.values.push_back(empty / mebibyte);
            result.figures.push_back((full - empty) / (2.0 * scale.listed_files));
        }
    });
    return {result};
}

std::vector<Result> start(const Data& /*data*/, const Scale& scale)
{
    // A start is short and the machine has hiccups: so there are more rounds than elsewhere.
    constexpr int times_as_many = 4;
    return run_contest(
        {10,
         u"Start to a shown window, empty directories"_s,
         [] { return run_timed({program(u"tavrel_start"_s)}); },
         {{u"a bare window"_s, [] { return run_timed({program(u"empty_window"_s)}); }, 1.5}}},
        scale.rounds * times_as_many);
}

void write_peak_memory(const QString& first, const QString& second, const QString& output)
{
    BenchWindow window;
    window.open(first, second);
    if (const int files = window.first().topLevelItemCount() - 1; files > 0) {
        window.compare_all();
        settle();
        window.expect_identical(files);
    }
    QFile file(output);
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray::number(peak_memory())) <= 0) {
        qFatal("cannot write %s", qPrintable(output));
    }
}

} // namespace bench
