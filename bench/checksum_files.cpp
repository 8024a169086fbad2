// Checksum files, written and verified as somebody at the window does it.

#include "bench/bench_window.h"
#include "bench/contest.h"
#include "bench/heartbeat.h"
#include "bench/lines.h"
#include "bench/peers.h"
#include "tree/mytreewidget.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

const QStringList& checksum_files()
{
    static const QStringList patterns = {u"*.md5"_s};
    return patterns;
}

/// Moved and not removed: ext4 passes over the inodes of files that were just removed one by one,
/// which takes many times as long as what is measured.
void put_away_checksum_files(const QDir& directory, const QTemporaryDir& away)
{
    for (const QString& name : directory.entryList(checksum_files(), QDir::Files)) {
        static int number = 0;
        if (!QFile::rename(directory.filePath(name), away.filePath(QString::number(++number)))) {
            qFatal("%s cannot be put away", qPrintable(name));
        }
    }
}

struct Written
{
    double seconds = 0;
    double longest_silence = 0; ///< milliseconds
};

Written write_checksums(const QString& path, int files, const QTemporaryDir& away)
{
    const QDir directory(path);
    put_away_checksum_files(directory, away);
    BenchWindow window;
    window.open(path);
    settle();
    Written written;
    {
        const Heartbeat heartbeat;
        window.first().selectAll();
        written.seconds = window.until_idle([&] { window.first().act_md5_file->trigger(); });
        settle();
        written.longest_silence = heartbeat.longest_gap();
    }
    if (const auto found = directory.entryList(checksum_files(), QDir::Files).size();
        found != files) {
        qFatal("%d checksum files were written, not %d", static_cast<int>(found), files);
    }
    put_away_checksum_files(directory, away);
    return written;
}

double hash_alone(const QString& directory, int files)
{
    BenchWindow window;
    window.open(directory);
    const double seconds = window.hash_all();
    window.expect_hashed(files);
    return seconds;
}

} // namespace

std::vector<Result> write_checksum_files(const Data& data, const Scale& scale)
{
    constexpr double milliseconds = 1000;
    const int files = scale.cold_files;
    const QString directory = data.flat(files, u'w');
    const QTemporaryDir away(directory + "-written"_L1);
    const QString work = u"\"Créer fichier MD5\" of %1 files"_s.arg(files);
    Result time{
        16, work, {}, {}, 3, {u"Tavrel"_s, u"ms"_s, {}}, {u"the digests alone"_s, u"ms"_s, {}}};
    Result silence{16,  work + u", longest silence"_s, u"ms"_s, {},
                   100, {u"Tavrel"_s, u"ms"_s, {}},    {}};
    for_rounds(work, scale.rounds, [&](bool counts) {
        const Written written = write_checksums(directory, files, away);
        const double alone = hash_alone(directory, files);
        if (counts) {
            time.ours.values.push_back(written.seconds * milliseconds);
            time.other.values.push_back(alone * milliseconds);
            time.figures.push_back(written.seconds / alone);
            silence.ours.values.push_back(written.longest_silence);
            silence.figures.push_back(written.longest_silence);
        }
    });
    return {time, silence};
}

std::vector<Result> verify_checksum_file(const Data& data, const Scale& scale)
{
    const QString directory = data.listed(scale.files);
    const auto ours = [&] {
        BenchWindow window;
        window.open(directory);
        MyTreeWidget& pane = window.first();
        const auto lists = pane.findItems(Data::list_name(), Qt::MatchExactly);
        if (lists.size() != 1) {
            qFatal("the pane does not show the list");
        }
        // A file that is missing or differs would be a fault, which ends the program.
        return window.until_report([&] { emit pane.itemActivated(lists.constFirst(), 0); });
    };
    const Peer peer{u"`md5sum -c`"_s,
                    [&] {
                        return run_timed({u"env"_s, u"-C"_s, directory, u"md5sum"_s, u"-c"_s,
                                          u"--quiet"_s, Data::list_name()});
                    },
                    1.2};
    return run_contest({17, u"Verifying a list of %1 good files"_s.arg(scale.files), ours, {peer}},
                       scale.rounds);
}

} // namespace bench
