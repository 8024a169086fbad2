// The widget-free parts: texts, digests, listings, pairing, exclusions and the hash job.

#include "engine/checksum_file.h"
#include "engine/digest.h"
#include "engine/duration_text.h"
#include "engine/exclusions.h"
#include "engine/hash_job.h"
#include "engine/job_run.h"
#include "engine/listing.h"
#include "engine/pairing.h"
#include "tests/test_dir.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFutureWatcher>
#include <QRandomGenerator>
#include <QSemaphore>
#include <QTest>
#include <QThreadPool>

using namespace Qt::StringLiterals;
using engine::Mark;

Q_DECLARE_METATYPE(QCryptographicHash::Algorithm)

class TestEngine : public QObject
{
    Q_OBJECT

  private slots:
    void duration_text_data();
    void duration_text();
    void exclusion_lists_data();
    void exclusion_lists();
    void excluded_files_data();
    void excluded_files();
    void digests_equal_the_reference_data();
    void digests_equal_the_reference();
    void listing_sorts_as_the_toolkit_does();
    void listing_resolves_links();
    void pairing_rules_data();
    void pairing_rules();
    void pairing_equals_the_plain_rule();
    void job_tells_the_walk_in_order();
    void job_survives_hostile_files();
    void job_ends_in_a_loop_of_links();
    void stopped_job_ends_at_once();
    void run_delivers_everything_before_it_finishes();
    void deleted_run_delivers_nothing();
};

void TestEngine::duration_text_data()
{
    QTest::addColumn<qint64>("ms");
    QTest::addColumn<QString>("text");
    const QList<std::pair<qint64, QString>> rows = {{3'723'456, u"01:02:03."_s},
                                                    {360'000'000, u"100:00:00."_s},
                                                    {62'500, u"01:02s."_s},
                                                    {60'000, u"01:00s."_s},
                                                    {59'999, u"59.99s"_s},
                                                    {2'345, u"2.45s"_s},
                                                    {2'105, u"2.05s"_s},
                                                    {2'100, u"2.00s"_s},
                                                    {999, u"0.99s"_s},
                                                    {3'600'000, u"01:00:00."_s},
                                                    {0, u"0.00s"_s}};
    for (const auto& [ms, text] : rows) {
        QTest::newRow(qPrintable(text)) << ms << text;
    }
}

void TestEngine::duration_text()
{
    QFETCH(qint64, ms);
    QTEST(format_time(ms), "text");
}

void TestEngine::exclusion_lists_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("suffixes");
    QTest::addColumn<QString>("saved");
    QTest::newRow("nothing") << QString() << QStringList() << QString();
    QTest::newRow("only separators") << u";;;"_s << QStringList() << QString();
    QTest::newRow("example") << u"*.jpg;tmp;*.dat"_s << QStringList{u"jpg"_s, u"tmp"_s, u"dat"_s}
                             << u"*.jpg;*.tmp;*.dat"_s;
    QTest::newRow("blanks stay") << u"a; *.b"_s << QStringList{u"a"_s, u" b"_s} << u"*.a;*. b"_s;
    QTest::newRow("prefix everywhere") << u"*.a*.b"_s << QStringList{u"ab"_s} << u"*.ab"_s;
    QTest::newRow("no suffix") << u"*."_s << QStringList{u""_s} << u"*."_s;
}

void TestEngine::exclusion_lists()
{
    QFETCH(QString, typed);
    QTEST(engine::parse_exclusions(typed), "suffixes");
    QTEST(engine::format_exclusions(engine::parse_exclusions(typed)), "saved");
}

void TestEngine::excluded_files_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("excluded");
    QTest::newRow("case") << u"JPG"_s << u"/a/b.jpg"_s << true;
    QTest::newRow("other case") << u"jpg"_s << u"/a/b.JPG"_s << true;
    QTest::newRow("last dot counts") << u"tar.gz"_s << u"/a/b.tar.gz"_s << false;
    QTest::newRow("inner dot") << u"gz"_s << u"/a/b.tar.gz"_s << true;
    QTest::newRow("no suffix") << u"*."_s << u"/a.d/README"_s << true;
    QTest::newRow("none for none") << u"jpg"_s << u"/a.jpg/README"_s << false;
    QTest::newRow("empty list") << QString() << u"/a/README"_s << false;
}

void TestEngine::excluded_files()
{
    QFETCH(QString, list);
    QFETCH(QString, path);
    QTEST(engine::is_excluded(engine::parse_exclusions(list), path), "excluded");
}

void TestEngine::digests_equal_the_reference_data()
{
    QTest::addColumn<QCryptographicHash::Algorithm>("algorithm");
    QTest::addColumn<qsizetype>("size");
    for (const auto algorithm : {QCryptographicHash::Md5, QCryptographicHash::Sha1}) {
        for (const qsizetype size : {0, 1, 55, 56, 64, 4096, 0x40000, 0x40001, 700'000}) {
            QTest::addRow("%d, %lld bytes", algorithm, static_cast<long long>(size))
                << algorithm << size;
        }
    }
}

void TestEngine::digests_equal_the_reference()
{
    QFETCH(QCryptographicHash::Algorithm, algorithm);
    QFETCH(qsizetype, size);
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator random(static_cast<quint32>(size));
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });

    engine::Digest digest(algorithm);
    digest.add("left over");
    digest.result_hex();
    digest.reset();
    const qsizetype half = size / 3;
    digest.add(QByteArrayView(bytes).first(half));
    digest.add(QByteArrayView(bytes).sliced(half));
    QCOMPARE(digest.result_hex(), QCryptographicHash::hash(bytes, algorithm).toHex());

    TestDir dir;
    const QString path = dir.createFile(u"file"_s, bytes);
    engine::FileHasher hasher(algorithm, nullptr);
    QList<int> percents;
    const engine::FileHasher::Listener listener{[] {}, [&](int p) { percents.append(p); }};
    const engine::FileResult result = hasher.hash(path, listener);
    QCOMPARE(result.outcome, engine::FileOutcome::Digested);
    QCOMPARE(result.digest.toLatin1(), QCryptographicHash::hash(bytes, algorithm).toHex());
    QCOMPARE(percents.isEmpty(), size == 0);
    QVERIFY(std::is_sorted(percents.begin(), percents.end()));
    QVERIFY(percents.isEmpty() || percents.last() == 100);
}

void TestEngine::listing_sorts_as_the_toolkit_does()
{
    TestDir dir;
    dir.createFiles({u"b.txt"_s, u"B.txt"_s, u"a b"_s, u"a-b"_s, u"été"_s, u"Zebra"_s, u"_x"_s,
                     u"10"_s, u"9"_s, u"😀.png"_s, u"ﬁ"_s, u".hidden"_s, u"œuf"_s, u"oeuf"_s});
    for (const char* name : {"sub", "Autre", ".git", "zz", "émile"}) {
        dir.createDir(QString::fromUtf8(name));
    }
    for (const QDir::Filters filters : {engine::shown_entries, engine::held_entries}) {
        const QDir toolkit(dir.path(), QString(), QDir::Name | QDir::DirsFirst | QDir::LocaleAware,
                           filters);
        QStringList names;
        QStringList paths;
        for (const engine::Entry& entry : engine::list_directory(dir.path(), filters)) {
            names.append(entry.name);
            paths.append(entry.path);
        }
        QCOMPARE(names, toolkit.entryList());
        QStringList canonical;
        for (const QFileInfo& info : toolkit.entryInfoList()) {
            canonical.append(info.canonicalFilePath());
        }
        QCOMPARE(paths, canonical);
    }
    QVERIFY(engine::list_directory(dir.at(u"missing"_s), engine::held_entries).isEmpty());
}

void TestEngine::listing_resolves_links()
{
    TestDir dir;
    dir.createFile(u"real/file.txt"_s, "12345");
    if (!QFile::link(dir.at(u"real/file.txt"_s), dir.filePath(u"alias.txt"_s)) ||
        !QFile::link(dir.at(u"real"_s), dir.filePath(u"alias"_s)) ||
        !QFile::link(dir.at(u"nowhere"_s), dir.filePath(u"broken"_s))) {
        QSKIP("no links here");
    }
    if (!QFileInfo(dir.filePath(u"alias"_s)).isDir()) {
        QSKIP("links are files of the shell here");
    }
    const QList<engine::Entry> entries = engine::list_directory(dir.path(), engine::held_entries);
    QCOMPARE(entries.size(), 3);
    QCOMPARE(entries[0].name, u"alias"_s);
    QVERIFY(entries[0].is_dir);
    QCOMPARE(entries[0].path, dir.at(u"real"_s));
    QCOMPARE(entries[2].name, u"alias.txt"_s);
    QCOMPARE(entries[2].path, dir.at(u"real/file.txt"_s));
    QCOMPARE(entries[2].size, 5);
}

namespace {

using Items = QList<engine::PairingItem>;
using Marks = QList<Mark>;

/// The rule as it is told, one item against all others.
engine::PairingResult plain_pairing(const Items& first, const Items& second)
{
    engine::PairingResult result{Marks(first.size(), Mark::None), Marks(second.size(), Mark::None)};
    QList<qsizetype> left;
    for (qsizetype b = 0; b < second.size(); ++b) {
        left.append(b);
    }
    for (qsizetype a = 0; a < first.size(); ++a) {
        bool paired = false;
        for (qsizetype i = 0; i < left.size() && !paired; ++i) {
            const qsizetype b = left[i];
            if (first[a].name != second[b].name) {
                continue;
            }
            if (first[a].checksum.toLower() == second[b].checksum.toLower()) {
                result.first[a] = result.second[b] = Mark::Identical;
            } else if (!second[b].checksum.isEmpty()) {
                result.first[a] = result.second[b] = Mark::Different;
            }
            left.removeAt(i);
            paired = true;
        }
        if (!paired && !first[a].checksum.isEmpty()) {
            result.first[a] = Mark::NoPartner;
        }
    }
    for (const qsizetype b : left) {
        if (!second[b].checksum.isEmpty()) {
            result.second[b] = Mark::NoPartner;
        }
    }
    return result;
}

} // namespace

void TestEngine::pairing_rules_data()
{
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<QStringList>("second");
    QTest::addColumn<QString>("marks");
    // Items as name=checksum; marks as one letter each, the lists parted by a bar.
    const auto row = [](const char* title, const QStringList& first, const QStringList& second,
                        const QString& marks) { QTest::newRow(title) << first << second << marks; };
    row("same", {u"a=1f"_s}, {u"a=1F"_s}, u"i|i"_s);
    row("changed", {u"a=1"_s}, {u"a=2"_s}, u"d|d"_s);
    row("missing on either side", {u"a=1"_s}, {u"b=1"_s}, u"n|n"_s);
    row("names keep their case", {u"a=1"_s}, {u"A=1"_s}, u"n|n"_s);
    row("both empty", {u"a="_s}, {u"a="_s}, u"i|i"_s);
    row("first empty", {u"a="_s}, {u"a=1"_s}, u"d|d"_s);
    row("second empty", {u"a=1"_s}, {u"a="_s}, u"-|-"_s);
    row("empty without partner", {u"a="_s}, {u"b="_s}, u"-|-"_s);
    row("namesakes in list order", {u"a=1"_s, u"a=2"_s}, {u"a=2"_s, u"a=2"_s, u"a=3"_s},
        u"di|din"_s);
    row("nothing", {}, {}, u"|"_s);
}

void TestEngine::pairing_rules()
{
    const auto items = [](const QStringList& texts) {
        Items list;
        for (const QString& text : texts) {
            list.append({text.section(u'=', 0, 0), text.section(u'=', 1)});
        }
        return list;
    };
    const auto letters = [](const Marks& marks) {
        QString text;
        for (const Mark mark : marks) {
            text += QLatin1String("-idnc")[static_cast<int>(mark)];
        }
        return text;
    };
    QFETCH(QStringList, first);
    QFETCH(QStringList, second);
    const auto result = engine::pair_by_name(items(first), items(second));
    QTEST(letters(result.first) + u'|' + letters(result.second), "marks");
}

void TestEngine::pairing_equals_the_plain_rule()
{
    QRandomGenerator random(20240607);
    const auto random_items = [&] {
        Items items(random.bounded(40));
        for (engine::PairingItem& item : items) {
            item.name = QString::number(random.bounded(12));
            const int checksum = random.bounded(5);
            item.checksum = checksum == 0 ? QString() : QString::number(checksum + 9, 16);
        }
        return items;
    };
    for (int round = 0; round < 500; ++round) {
        const Items first = random_items();
        const Items second = random_items();
        const auto expected = plain_pairing(first, second);
        const auto result = engine::pair_by_name(first, second);
        QCOMPARE(result.first, expected.first);
        QCOMPARE(result.second, expected.second);
    }
}

namespace {

/// Runs a plan in this thread and notes what it tells, a line per message.
QStringList run_and_note(const engine::HashPlan& plan, const engine::StopFlag& stop = nullptr)
{
    struct Note
    {
        QString operator()(const engine::DirectoryReached& m) const
        {
            return u"reached %1"_s.arg(m.row);
        }
        QString operator()(const engine::DirectoryFound& m) const
        {
            return u"directory %1 in %2: %3"_s.arg(m.row).arg(m.parent).arg(m.entry.name);
        }
        QString operator()(const engine::FileStarted& m) const
        {
            return u"started "_s + m.path.section(u'/', -1);
        }
        QString operator()(const engine::FileProgress& m) const { return u"%1%"_s.arg(m.percent); }
        QString operator()(const engine::FileEnded& m) const
        {
            return u"ended %1 %2"_s.arg(m.row).arg(outcome(m.result));
        }
        QString operator()(const engine::FileFound& m) const
        {
            return u"file in %1: %2 %3"_s.arg(m.parent).arg(m.entry.name, outcome(m.result));
        }
        static QString outcome(const engine::FileResult& result)
        {
            switch (result.outcome) {
            case engine::FileOutcome::Digested:
                return result.digest.left(6);
            case engine::FileOutcome::Unreadable:
                return u"unreadable"_s;
            case engine::FileOutcome::Stopped:
                break;
            }
            return u"stopped"_s;
        }
    };
    QStringList notes;
    engine::run_hash_job(plan, stop, [&](engine::JobMessage&& message) {
        notes.append(std::visit(Note{}, message));
    });
    return notes;
}

engine::HashStep step(engine::HashStep::Kind kind, engine::RowId row, const QString& path)
{
    return {kind, row, path};
}

} // namespace

void TestEngine::job_tells_the_walk_in_order()
{
    using Kind = engine::HashStep::Kind;
    TestDir dir;
    dir.createFile(u"top/one.txt"_s, "one");
    dir.createFile(u"top/skip.TMP"_s, "x");
    dir.createFile(u"top/sub/two.txt"_s, "two");
    dir.createFile(u"top/empty.txt"_s);
    dir.createDir(u"top/void"_s);
    engine::HashPlan plan;
    plan.algorithm = QCryptographicHash::Md5;
    plan.exclusions = {u"tmp"_s};
    // A file that the plan names is hashed whatever its suffix.
    plan.steps = {step(Kind::File, 0, dir.at(u"top/skip.TMP"_s)), step(Kind::Enter, 1, dir.at()),
                  step(Kind::Walk, 2, dir.at(u"top"_s)),
                  step(Kind::File, 3, dir.at(u"top/gone.txt"_s))};
    plan.next_row = 4;
    const QStringList expected = {u"started skip.TMP"_s,
                                  u"100%"_s,
                                  u"ended 0 9dd4e4"_s,
                                  u"reached 1"_s,
                                  u"reached 2"_s,
                                  u"directory 4 in 2: sub"_s,
                                  u"reached 4"_s,
                                  u"started two.txt"_s,
                                  u"100%"_s,
                                  u"file in 4: two.txt b8a9f7"_s,
                                  u"directory 5 in 2: void"_s,
                                  u"reached 5"_s,
                                  u"started empty.txt"_s,
                                  u"file in 2: empty.txt d41d8c"_s,
                                  u"started one.txt"_s,
                                  u"100%"_s,
                                  u"file in 2: one.txt f97c5d"_s,
                                  u"ended 3 unreadable"_s};
    QCOMPARE(run_and_note(plan), expected);
}

void TestEngine::job_survives_hostile_files()
{
    using Kind = engine::HashStep::Kind;
    TestDir dir;
    engine::HashPlan plan;
    const auto expect = [&](const QString& path, const QString& outcome) {
        plan.steps = {step(Kind::File, 0, path)};
        QCOMPARE(run_and_note(plan).last(), u"ended 0 "_s + outcome);
    };
    expect(dir.createDir(u"directory"_s), u"unreadable"_s);
    expect(dir.at(u"missing"_s), u"unreadable"_s);
    const QString unreadable = make_unreadable(dir, u"secret"_s);
    if (!unreadable.isEmpty()) {
        expect(unreadable, u"unreadable"_s);
    }
    const QByteArray long_name(255, 'n');
    expect(dir.createFile(QString::fromLatin1(long_name), "x"), u"9dd4e4"_s);
    // Reports no size and yet delivers bytes.
    QFile status(u"/proc/version"_s);
    if (status.open(QIODevice::ReadOnly)) {
        const QByteArray content = status.readAll();
        expect(status.fileName(),
               QString::fromLatin1(
                   QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex().left(6)));
    }
}

void TestEngine::job_ends_in_a_loop_of_links()
{
    using Kind = engine::HashStep::Kind;
    TestDir dir;
    dir.createFile(u"a/b/file"_s, "x");
    if (!QFile::link(dir.at(u"a"_s), dir.filePath(u"a/b/back"_s)) ||
        !QFileInfo(dir.filePath(u"a/b/back"_s)).isDir()) {
        QSKIP("no directory links here");
    }
    engine::HashPlan plan;
    plan.steps = {step(Kind::Walk, 0, dir.at(u"a"_s))};
    plan.next_row = 1;
    const QStringList expected = {
        u"reached 0"_s, u"directory 1 in 0: b"_s, u"reached 1"_s, u"directory 2 in 1: back"_s,
        u"reached 2"_s, u"started file"_s,        u"100%"_s,      u"file in 1: file 9dd4e4"_s};
    QCOMPARE(run_and_note(plan), expected);
}

void TestEngine::stopped_job_ends_at_once()
{
    using Kind = engine::HashStep::Kind;
    TestDir dir;
    // Would take hours to read.
    QFile huge(dir.filePath(u"huge"_s));
    QVERIFY(huge.open(QIODevice::WriteOnly));
    if (!huge.resize(qint64(1) << 40)) {
        QSKIP("no sparse files of 1 TiB here");
    }
    huge.close();
    engine::HashPlan plan;
    plan.steps = {step(Kind::File, 0, huge.fileName()), step(Kind::File, 1, huge.fileName())};
    const engine::StopFlag stop = engine::make_stop_flag();
    QStringList notes;
    engine::run_hash_job(plan, stop, [&](engine::JobMessage&& message) {
        if (std::holds_alternative<engine::FileStarted>(message)) {
            stop->store(true);
        }
        if (const auto* ended = std::get_if<engine::FileEnded>(&message)) {
            notes.append(QString::number(ended->row));
            QCOMPARE(ended->result.outcome, engine::FileOutcome::Stopped);
        }
    });
    QCOMPARE(notes, QStringList{u"0"_s});
}

void TestEngine::run_delivers_everything_before_it_finishes()
{
    using Kind = engine::HashStep::Kind;
    TestDir dir;
    engine::HashPlan plan;
    constexpr int files = 3000;
    const QString path = dir.createFile(u"file"_s, "x");
    for (int i = 0; i < files; ++i) {
        plan.steps.push_back(step(Kind::File, i, path));
    }
    QList<int> ended;
    bool over = false;
    engine::JobRun run(std::move(plan), false,
                       {[&](engine::JobMessage& message) {
                            QCOMPARE(QThread::currentThread(), thread());
                            if (const auto* file = std::get_if<engine::FileEnded>(&message)) {
                                ended.append(file->row);
                            }
                        },
                        [&] { over = true; }});
    QVERIFY(run.future().isRunning());
    QFutureWatcher<void> watcher;
    bool finished = false;
    connect(&watcher, &QFutureWatcherBase::finished, this, [&] {
        finished = true;
        QVERIFY(over);
        QCOMPARE(ended.size(), files);
    });
    watcher.setFuture(run.future());
    QTRY_VERIFY_WITH_TIMEOUT(finished, 60000);
    QVERIFY(std::is_sorted(ended.begin(), ended.end()));
    QVERIFY(run.future().isFinished());
}

void TestEngine::deleted_run_delivers_nothing()
{
    using Kind = engine::HashStep::Kind;
    TestDir dir;
    engine::HashPlan plan;
    for (int i = 0; i < 100; ++i) {
        plan.steps.push_back(step(Kind::File, i, dir.createFile(u"file"_s, "x")));
    }
    bool reached = false;
    auto run = std::make_unique<engine::JobRun>(
        std::move(plan), false,
        engine::JobRun::Handler{[&](engine::JobMessage&) { reached = true; },
                                [&] { reached = true; }});
    const QFuture<void> future = run->future();
    run.reset();
    QVERIFY(QThreadPool::globalInstance()->waitForDone(60000));
    QCoreApplication::processEvents();
    QVERIFY(!reached);
    QVERIFY(future.isFinished());
}

QTEST_GUILESS_MAIN(TestEngine)
#include "test_engine.moc"
