// The widget-free parts: texts, exclusions, digests, listings, pairing and runs of a hash job.

#include "engine/digest.h"
#include "engine/duration_text.h"
#include "engine/exclusions.h"
#include "engine/file_hasher.h"
#include "engine/job_run.h"
#include "engine/listing.h"
#include "engine/pairing.h"
#include "tests/test_dir.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFutureWatcher>
#include <QRandomGenerator>
#include <QTest>
#include <QThreadPool>

using namespace Qt::StringLiterals;
using engine::Mark;

class TestEngine : public QObject
{
    Q_OBJECT

  private slots:
    void duration_text();
    void exclusion_lists();
    void excluded_files();
    void digests_equal_the_reference_data();
    void digests_equal_the_reference();
    void growing_file_stays_at_a_hundred();
    void listing_sorts_as_the_toolkit_does();
    void listing_resolves_links();
    void pairing_rules();
    void run_delivers_everything_before_it_finishes();
    void deleted_run_delivers_nothing();
};

void TestEngine::duration_text()
{
    const QList<std::pair<qint64, QString>> rows = {{0, u"0.00s"_s},
                                                    {999, u"0.99s"_s},
                                                    {2'100, u"2.00s"_s},
                                                    {2'105, u"2.05s"_s},
                                                    {2'345, u"2.45s"_s},
                                                    {59'999, u"59.99s"_s},
                                                    {60'000, u"01:00s."_s},
                                                    {62'500, u"01:02s."_s},
                                                    {3'600'000, u"01:00:00."_s},
                                                    {3'723'456, u"01:02:03."_s},
                                                    {360'000'000, u"100:00:00."_s}};
    for (const auto& [ms, text] : rows) {
        QCOMPARE(format_time(ms), text);
    }
}

void TestEngine::exclusion_lists()
{
    const QList<std::tuple<QString, QStringList, QString>> rows = {
        {u""_s, {}, u""_s},
        {u";;;"_s, {}, u""_s},
        {u"*.jpg;tmp;*.dat"_s, {u"jpg"_s, u"tmp"_s, u"dat"_s}, u"*.jpg;*.tmp;*.dat"_s},
        {u"a; *.b"_s, {u"a"_s, u" b"_s}, u"*.a;*. b"_s},
        {u"*.a*.b"_s, {u"ab"_s}, u"*.ab"_s},
        {u"*."_s, {u""_s}, u"*."_s}};
    for (const auto& [typed, suffixes, saved] : rows) {
        QCOMPARE(engine::parse_exclusions(typed), suffixes);
        QCOMPARE(engine::format_exclusions(suffixes), saved);
    }
}

void TestEngine::excluded_files()
{
    const auto excluded = [](const QString& list, const QString& path) {
        return engine::is_excluded(engine::parse_exclusions(list), path);
    };
    QVERIFY(excluded(u"JPG"_s, u"/a/b.jpg"_s));
    QVERIFY(excluded(u"jpg"_s, u"/a/b.JPG"_s));
    QVERIFY(excluded(u"gz"_s, u"/a/b.tar.gz"_s));
    QVERIFY(!excluded(u"tar.gz"_s, u"/a/b.tar.gz"_s));
    QVERIFY(excluded(u"*."_s, u"/a.d/README"_s));
    QVERIFY(!excluded(u"jpg"_s, u"/a.jpg/README"_s));
    QVERIFY(!excluded(u""_s, u"/a/README"_s));
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
    const QByteArray expected = QCryptographicHash::hash(bytes, algorithm).toHex();

    engine::Digest digest(algorithm);
    digest.add("left over");
    digest.result_hex();
    digest.reset();
    digest.add(QByteArrayView(bytes).first(size / 3));
    digest.add(QByteArrayView(bytes).sliced(size / 3));
    QCOMPARE(digest.result_hex(), expected);

    TestDir dir;
    engine::FileHasher hasher(algorithm, nullptr);
    QList<int> percents;
    const engine::FileResult result =
        hasher.hash(dir.createFile(u"file"_s, bytes), {[] {}, [&](int p) { percents.append(p); }});
    QCOMPARE(result.outcome, engine::FileOutcome::Digested);
    QCOMPARE(result.digest.toLatin1(), expected);
    QVERIFY(std::is_sorted(percents.begin(), percents.end()));
    QCOMPARE(percents.isEmpty() ? 0 : percents.last(), size == 0 ? 0 : 100);
}

void TestEngine::growing_file_stays_at_a_hundred()
{
    TestDir dir;
    const QString path = dir.createFile(u"file"_s, QByteArray(700'000, 'x'));
    engine::FileHasher hasher(QCryptographicHash::Md5, nullptr);
    QList<int> percents;
    hasher.hash(path, {[&] { QVERIFY(QFile::resize(path, 2'000'000)); },
                       [&](int percent) { percents.append(percent); }});
    QCOMPARE(percents, (QList<int>{37, 74, 100}));
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
        QStringList paths;
        for (const engine::Entry& entry : engine::list_directory(dir.path(), filters)) {
            paths.append(entry.name + u' ' + entry.path);
        }
        QStringList expected;
        for (const QFileInfo& info : toolkit.entryInfoList()) {
            expected.append(info.fileName() + u' ' + info.canonicalFilePath());
        }
        QCOMPARE(paths, expected);
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
    QStringList found;
    for (const engine::Entry& entry : engine::list_directory(dir.path(), engine::held_entries)) {
        found.append(
            u"%1 %2 %3 %4"_s.arg(entry.name, entry.path).arg(entry.is_dir).arg(entry.size));
    }
    QCOMPARE(found, (QStringList{u"alias %1 1 0"_s.arg(dir.at(u"real"_s)),
                                 u"real %1 1 0"_s.arg(dir.at(u"real"_s)),
                                 u"alias.txt %1 0 5"_s.arg(dir.at(u"real/file.txt"_s))}));
}

void TestEngine::pairing_rules()
{
    const auto items = [](const QString& texts) {
        QList<engine::PairingItem> list;
        for (const QString& text : texts.split(u' ', Qt::SkipEmptyParts)) {
            list.append({text.section(u'=', 0, 0), text.section(u'=', 1)});
        }
        return list;
    };
    const auto letters = [](const QList<Mark>& marks) {
        QString text;
        for (const Mark mark : marks) {
            text += QLatin1String("-idnc")[static_cast<int>(mark)];
        }
        return text;
    };
    // Items as name=checksum; marks as one letter each, the lists parted by a bar.
    const auto marks = [&](const QString& first, const QString& second) {
        const auto result = engine::pair_by_name(items(first), items(second));
        return letters(result.first) + u'|' + letters(result.second);
    };
    QCOMPARE(marks(u"a=1f"_s, u"a=1F"_s), u"i|i"_s);
    QCOMPARE(marks(u"a=1"_s, u"a=2"_s), u"d|d"_s);
    QCOMPARE(marks(u"a=1"_s, u"b=1"_s), u"n|n"_s);
    QCOMPARE(marks(u"a=1"_s, u"A=1"_s), u"n|n"_s);
    QCOMPARE(marks({}, {}), u"|"_s);
    // A file that was not hashed has no checksum.
    QCOMPARE(marks(u"a="_s, u"a="_s), u"i|i"_s);
    QCOMPARE(marks(u"a="_s, u"a=1"_s), u"d|d"_s);
    QCOMPARE(marks(u"a=1"_s, u"a="_s), u"-|-"_s);
    QCOMPARE(marks(u"a="_s, u"b="_s), u"-|-"_s);
    // Namesakes pair up in the order of their lists.
    QCOMPARE(marks(u"a=1 a=2"_s, u"a=2 a=2 a=3"_s), u"di|din"_s);
    QCOMPARE(marks(u"a=1 b=1 a=1 a=2"_s, u"a=1 a=2 b=1"_s), u"iidn|idi"_s);
    QCOMPARE(marks(u"a= a=1"_s, u"a=1 a= a=1"_s), u"d-|d-n"_s);
}

namespace {

/// A plan to hash a file so many times.
engine::HashPlan plan_for(const QString& path, int times)
{
    engine::HashPlan plan;
    for (int i = 0; i < times; ++i) {
        plan.steps.push_back({engine::HashStep::Kind::File, i, path});
    }
    return plan;
}

} // namespace

void TestEngine::run_delivers_everything_before_it_finishes()
{
    TestDir dir;
    constexpr int files = 3000;
    QList<int> ended;
    bool over = false;
    engine::JobRun run({[&](engine::JobMessage& message) {
                            QCOMPARE(QThread::currentThread(), thread());
                            if (const auto* file = std::get_if<engine::FileEnded>(&message)) {
                                ended.append(file->row);
                            }
                        },
                        [&] { over = true; }});
    run.start(plan_for(dir.createFile(u"file"_s, "x"), files), false);
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
}

void TestEngine::deleted_run_delivers_nothing()
{
    TestDir dir;
    bool reached = false;
    auto run = std::make_unique<engine::JobRun>(engine::JobRun::Handler{
        [&](engine::JobMessage&) { reached = true; }, [&] { reached = true; }});
    run->start(plan_for(dir.createFile(u"file"_s, "x"), 100), false);
    const QFuture<void> future = run->future();
    run.reset();
    QVERIFY(QThreadPool::globalInstance()->waitForDone(60000));
    QCoreApplication::processEvents();
    QVERIFY(!reached && future.isFinished());
}

QTEST_GUILESS_MAIN(TestEngine)
#include "test_engine.moc"
