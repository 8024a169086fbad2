// Files so large that nothing but reading and digesting counts.

#include "bench/bench_window.h"
#include "bench/contest.h"
#include "bench/lines.h"
#include "bench/peers.h"
#include "tree/mytreewidget.h"

using namespace Qt::StringLiterals;

namespace bench {

namespace {

Contest large_file_contest(const QString& directory, const QString& path, bool sha1)
{
    const auto ours = [=] {
        BenchWindow window;
        if (sha1) {
            window.use_sha1();
        }
        window.open(directory);
        window.first().select_by_name(path.section(u'/', -1));
        const double seconds = window.hash_selection();
        window.expect_hashed(1);
        return seconds;
    };
    const QString option = sha1 ? u"-sha1"_s : u"-md5"_s;
    const Peer openssl{u"`openssl dgst %1`"_s.arg(option),
                       [=] {
                           return run_timed({u"openssl"_s, u"dgst"_s, option, path});
                       },
                       1.02};
    return {1, u"One large file, "_s + (sha1 ? u"SHA1"_s : u"MD5"_s), ours, {openssl}};
}

} // namespace

std::vector<Result> hash_large_file(const Data& data, const Scale& scale)
{
    const QString directory = data.large(scale.large_bytes);
    const QString path = files_below(directory).constFirst();
    std::vector<Result> results;
    for (const bool sha1 : {false, true}) {
        const auto rows = run_contest(large_file_contest(directory, path, sha1), scale.rounds);
        results.insert(results.end(), rows.begin(), rows.end());
    }
    return results;
}

std::vector<Result> compare_large_files(const Data& data, const Scale& scale)
{
    const QString first = data.large(scale.large_bytes, u'a');
    const QString second = data.large(scale.large_bytes, u'b');
    const QStringList files = files_below(first) + files_below(second);
    const auto ours = [&] {
        BenchWindow window;
        window.use_sha1();
        window.open(first, second);
        const double seconds = window.compare_all();
        window.expect_identical(1);
        return seconds;
    };
    return run_contest(
        {2,
         u"\"Comparer Tout\", one large file on each side, SHA1"_s,
         ours,
         {{u"`rhash --sha1`"_s,
           [&] {
               return run_timed(QStringList{u"rhash"_s, u"--sha1"_s} << files);
           },
           0.55},
          {u"`sha1sum`"_s, [&] { return run_timed(QStringList{u"sha1sum"_s} << files); }, {}}}},
        scale.rounds);
}

} // namespace bench
