// Files that are not in memory, so that the drive counts.

#include "bench/bench_window.h"
#include "bench/cold.h"
#include "bench/lines.h"
#include "bench/peers.h"
#include "tree/mytreewidget.h"

using namespace Qt::StringLiterals;

namespace bench {

namespace {

/// A contest in which everybody meets cold files. The window shows its directories before they are
/// made cold, and the clock starts after that.
class ColdContest
{
  public:
    ColdContest(int line, const QString& work, QStringList files)
        : contest_{line, u"Cold: "_s + work, {}, {}}, files_(std::move(files))
    {}

    void add(const Peer& peer) { contest_.peers.push_back(cold(peer, files_)); }

    /// `prepare` readies a window, `work` answers how long it took.
    template<class Prepare, class Work>
    std::vector<Result> run(int rounds, Prepare prepare, Work work)
    {
        contest_.ours = [&] {
            BenchWindow window;
            prepare(window);
            make_cold(files_);
            return work(window);
        };
        return run_contest(contest_, rounds);
    }

  private:
    Contest contest_;
    QStringList files_;
};

} // namespace

std::vector<Result> hash_cold_directory(const Data& data, const Scale& scale)
{
    const QString directory = data.flat(scale.cold_files);
    const QStringList files = files_below(directory);
    ColdContest contest(11, u"HashAll(), %1 files"_s.arg(scale.cold_files), files);
    contest.add(md5sum(files, 0.4));
    return contest.run(
        scale.rounds, [&](BenchWindow& window) { window.open(directory); },
        [&](BenchWindow& window) {
            const double seconds = window.hash_all();
            window.expect_hashed(scale.cold_files);
            return seconds;
        });
}

std::vector<Result> compare_cold_directories(const Data& data, const Scale& scale)
{
    const QString first = data.flat(scale.cold_files, u'a');
    const QString second = data.flat(scale.cold_files, u'b');
    const QStringList files = files_below(first) + files_below(second);
    ColdContest contest(
        12, u"\"Comparer Tout\", two directories of %1 files"_s.arg(scale.cold_files), files);
    contest.add(md5sum(files, 0.25));
    contest.add(hashdeep({first, second}));
    contest.add({u"`rhash --md5`"_s,
                 [=] {
                     return run_timed({u"rhash"_s, u"--md5"_s, u"-r"_s, first, second});
                 },
                 {}});
    return contest.run(
        scale.rounds, [&](BenchWindow& window) { window.open(first, second); },
        [&](BenchWindow& window) {
            const double seconds = window.compare_all();
            window.expect_identical(scale.cold_files);
            return seconds;
        });
}

std::vector<Result> hash_cold_large_file(const Data& data, const Scale& scale)
{
    const QString directory = data.large(scale.cold_bytes);
    const QStringList files = files_below(directory);
    const QString& path = files.constFirst();
    ColdContest contest(13, u"one large file, SHA1"_s, files);
    contest.add({u"`openssl dgst -sha1`"_s,
                 [=] {
                     return run_timed({u"openssl"_s, u"dgst"_s, u"-sha1"_s, path});
                 },
                 0.7});
    contest.add({u"`cat`"_s, [=] { return run_timed({u"cat"_s, path}); }, {}});
    return contest.run(
        scale.rounds,
        [&](BenchWindow& window) {
            window.use_sha1();
            window.open(directory);
            window.first().select_by_name(path.section(u'/', -1));
        },
        [](BenchWindow& window) {
            const double seconds = window.hash_selection();
            window.expect_hashed(1);
            return seconds;
        });
}

std::vector<Result> compare_cold_large_files(const Data& data, const Scale& scale)
{
    const QString first = data.large(scale.cold_bytes, u'a');
    const QString second = data.large(scale.cold_bytes, u'b');
    const QStringList files = files_below(first) + files_below(second);
    ColdContest contest(14, u"\"Comparer Tout\", one large file on each side, SHA1"_s, files);
    contest.add({u"`rhash --sha1`"_s,
                 [=] {
                     return run_timed(QStringList{u"rhash"_s, u"--sha1"_s} << files);
                 },
                 0.6});
    return contest.run(
        scale.rounds,
        [&](BenchWindow& window) {
            window.use_sha1();
            window.open(first, second);
        },
        [](BenchWindow& window) {
            const double seconds = window.compare_all();
            window.expect_identical(1);
            return seconds;
        });
}

std::vector<Result> hash_cold_nested_directory(const Data& data, const Scale& scale)
{
    const QString directory = data.nested(scale.cold_files, scale.cold_directories);
    const QStringList files = files_below(directory);
    ColdContest contest(
        15,
        u"HashThis(), %1 files in %2 unexpanded subdirectories"_s.arg(scale.cold_files)
            .arg(scale.cold_directories),
        files);
    contest.add(md5sum(files, 0.4));
    return contest.run(
        scale.rounds,
        [&](BenchWindow& window) {
            window.open(directory);
            window.first().select_by_name(Data::nested_name());
        },
        [&](BenchWindow& window) {
            const double seconds = window.hash_selection();
            window.expect_hashed(scale.cold_files);
            return seconds;
        });
}

} // namespace bench
