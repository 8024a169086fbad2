// The widget-free parts: texts, exclusions, digests, listings, pairing, checksum files and runs.

#include "engine/checksum_file.h"
#include "engine/digest.h"
#include "engine/duration_text.h"
#include "engine/exclusions.h"
#include "engine/file_hasher.h"
#include "engine/job_run.h"
#include "engine/listing.h"
#include "engine/pairing.h"
#include "rows/size_text.h"
#include "tests/support/test_dir.h"

#include <QCryptographicHash>
#include <QFutureWatcher>
#include <QRandomGenerator>
#include <QTest>
#include <QThreadPool>

using namespace Qt::StringLiterals;
using engine::Mark;

namespace {

const QByteArray digest_a(32, 'a');
const QByteArray digest_b(32, 'b');

/// What a checksum file of this content lists, as "name=digest" in order, parted by blanks.
QString listed_in(TestDir& dir, const QByteArray& content)
{
    const auto expected = engine::read_checksum_file(dir.createFile(u"sums.md5"_s, content));
    QStringList lines;
    for (qsizetype i = 0; expected && i < expected->size(); ++i) {
        const QString path = expected->path(i);
        lines << path.sliced(dir.at().size() + 1) + u'=' + expected->digest(i);
        if (!expected->contains(path) || expected->contains(path + u'x')) {
            return u"not found again"_s;
        }
    }
    return expected ? lines.join(u' ') : u"unreadable"_s;
}

QList<engine::PairingItem> items(const QString& texts)
{
    QList<engine::PairingItem> list;
    for (const QString& text : texts.split(u' ', Qt::SkipEmptyParts)) {
        const QString checksum = text.section(u'=', 1);
        const bool cleared = checksum == "~"_L1;
        list.append({text.section(u'=', 0, 0), cleared ? QString() : checksum, cleared});
    }
    return list;
}

QString letters(const QList<Mark>& marks)
{
    QString text;
    for (const Mark mark : marks) {
        text += QLatin1String("-idnc")[static_cast<int>(mark)];
    }
    return text;
}

/// The rule as it is told: for every item of the first list, the second one from its start.
engine::PairingResult plain_rule(const QList<engine::PairingItem>& first,
                                 const QList<engine::PairingItem>& second)
{
    engine::PairingResult marks{QList<Mark>(first.size()), QList<Mark>(second.size())};
    QList<bool> taken(second.size());
    for (qsizetype a = 0; a < first.size(); ++a) {
        bool found = false;
        for (qsizetype b = 0; b < second.size() && !found; ++b) {
            found = !taken[b] && first[a].name == second[b].name;
            if (found) {
                taken[b] = true;
                const QString left = first[a].checksum.toLower();
                const QString right = second[b].checksum.toLower();
                const bool says_nothing =
                    left.isEmpty() && right.isEmpty() && (first[a].cleared || second[b].cleared);
                if (!says_nothing && (left == right || !right.isEmpty())) {
                    marks.first[a] = marks.second[b] =
                        left == right ? Mark::Identical : Mark::Different;
                }
            }
        }
        marks.first[a] = !found && !first[a].checksum.isEmpty() ? Mark::NoPartner : marks.first[a];
    }
    for (qsizetype b = 0; b < second.size(); ++b) {
        marks.second[b] =
            !taken[b] && !second[b].checksum.isEmpty() ? Mark::NoPartner : marks.second[b];
    }
    return marks;
}

} // namespace

class TestEngine : public QObject
{
    Q_OBJECT

  private slots:
    void texts();
    void exclusions();
    void digests_equal_the_reference();
    void listing_sorts_as_the_toolkit_does();
    void listing_resolves_links();
    void pairing();
    void checksum_files_are_read();
    void checksum_files_are_written_whole();
    void run_delivers_everything_before_it_finishes();
};

void TestEngine::texts()
{
    const QList<std::pair<qint64, QString>> times = {{0, u"0.00s"_s},
                                                     {999, u"0.99s"_s},
                                                     {2'100, u"2.00s"_s},
                                                     {2'105, u"2.05s"_s},
                                                     {59'999, u"59.99s"_s},
                                                     {60'000, u"01:00s."_s},
                                                     {3'723'456, u"01:02:03."_s},
                                                     {360'000'000, u"100:00:00."_s}};
    for (const auto& [ms, text] : times) {
        QCOMPARE(format_time(ms), text);
    }
    const QList<std::pair<qint64, QString>> sizes = {{0, u"1 Ko"_s},
                                                     {1'000, u"1 Ko"_s},
                                                     {1'536, u"2 Ko"_s},
                                                     {1'023'999, u"1000 Ko"_s},
                                                     {1'024'000, u"1 Mo"_s},
                                                     {1'048'575'999, u"1000 Mo"_s},
                                                     {1'048'576'000, u"1 Go"_s},
                                                     {1'073'741'823'999, u"1000 Go"_s},
                                                     {1'073'741'824'000, u"Trop Gros"_s}};
    for (const auto& [bytes, text] : sizes) {
        QCOMPARE(format_size(bytes), text);
    }
}

void TestEngine::exclusions()
{
    const QList<std::tuple<QString, QStringList, QString>> lists = {
        {u";;;"_s, {}, u""_s},
        {u"*.jpg;tmp;*.dat"_s, {u"jpg"_s, u"tmp"_s, u"dat"_s}, u"*.jpg;*.tmp;*.dat"_s},
        {u"a; *.b"_s, {u"a"_s, u" b"_s}, u"*.a;*. b"_s},
        {u"*.a*.b"_s, {u"ab"_s}, u"*.ab"_s},
        {u"*."_s, {u""_s}, u"*."_s}};
    for (const auto& [typed, suffixes, saved] : lists) {
        QCOMPARE(engine::parse_exclusions(typed), suffixes);
        QCOMPARE(engine::format_exclusions(suffixes), saved);
    }
    const QList<std::tuple<QString, QString, bool>> files = {
        {u"JPG"_s, u"/a/b.jpg"_s, true},   {u"jpg"_s, u"/a/b.JPG"_s, true},
        {u"gz"_s, u"/a/b.tar.gz"_s, true}, {u"tar.gz"_s, u"/a/b.tar.gz"_s, false},
        {u"*."_s, u"/a.d/README"_s, true}, {u"jpg"_s, u"/a.jpg/README"_s, false},
        {u""_s, u"/a/README"_s, false}};
    for (const auto& [list, path, excluded] : files) {
        QCOMPARE(engine::is_excluded(engine::parse_exclusions(list), path), excluded);
    }
}

void TestEngine::digests_equal_the_reference()
{
    TestDir dir;
    for (const auto algorithm : {QCryptographicHash::Md5, QCryptographicHash::Sha1}) {
        engine::Digest digest(algorithm);
        engine::FileHasher hasher(algorithm, {});
        for (const qsizetype size : {0, 1, 55, 56, 64, 4096, 0x40000, 0x40001, 700'000}) {
            QByteArray bytes(size, Qt::Uninitialized);
            QRandomGenerator random(static_cast<quint32>(size));
            std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
            const QByteArray expected = QCryptographicHash::hash(bytes, algorithm).toHex();
            digest.reset();
            digest.add(QByteArrayView(bytes).first(size / 3));
            digest.add(QByteArrayView(bytes).sliced(size / 3));
            QCOMPARE(digest.result_hex(), expected);

            QList<int> percents;
            const QString path = dir.createFile(u"file"_s, bytes);
            const auto result = hasher.hash(path, {[] {}, [&](int p) { percents.append(p); }, {}});
            QCOMPARE(result.digest.toLatin1(), expected);
            QVERIFY(std::is_sorted(percents.begin(), percents.end()));
            QCOMPARE(percents.isEmpty() ? 0 : percents.last(), size == 0 ? 0 : 100);
        }
        // One that grows while it is read stays at a hundred.
        QList<int> percents;
        const QString path = dir.createFile(u"file"_s, QByteArray(700'000, 'x'));
        hasher.hash(path, {[&] { QVERIFY(QFile::resize(path, 2'000'000)); },
                           [&](int percent) { percents.append(percent); },
                           {}});
        QCOMPARE(percents, (QList<int>{37, 74, 100}));
    }
}

void TestEngine::listing_sorts_as_the_toolkit_does()
{
    TestDir dir;
    for (const char* name : {"b.txt", "B.txt",   "a b",    "a-b",     "été",     "Zebra", "_x",
                             "10",    "9",       "😀.png",  "ﬁ",       ".hidden", "œuf",   "oeuf",
                             "sub/x", "Autre/x", ".git/x", "émile/x", "_d/x",    " d/x",  ",d/x"}) {
        dir.createFile(QString::fromUtf8(name));
    }
    for (const QDir::Filters filters : {engine::shown_entries, engine::held_entries}) {
        const QDir toolkit(dir.path(), QString(), QDir::Name | QDir::DirsFirst | QDir::LocaleAware,
                           filters | QDir::NoDotDot);
        QStringList expected = toolkit.entryList();
        if (filters == engine::shown_entries) {
            expected.prepend(u".."_s); // first whatever the locale
        }
        QStringList names;
        for (const engine::Entry& entry : engine::list_directory(dir.path(), filters)) {
            names.append(entry.name);
            QCOMPARE(entry.path, QFileInfo(dir.filePath(entry.name)).canonicalFilePath());
        }
        QCOMPARE(names, expected);
    }
    QVERIFY(engine::list_directory(dir.at(u"missing"_s), engine::held_entries).isEmpty());
}

void TestEngine::listing_resolves_links()
{
    TestDir dir;
    dir.createFile(u"real/file.txt"_s, "12345");
    const QString alias = dir.filePath(u"alias"_s);
    if (!QFile::link(dir.at(u"real/file.txt"_s), dir.filePath(u"alias.txt"_s)) ||
        !QFile::link(dir.at(u"real"_s), alias) ||
        !QFile::link(dir.at(u"nowhere"_s), dir.filePath(u"broken"_s)) ||
        !QFileInfo(alias).isDir()) {
        QSKIP("links are files of the shell here");
    }
    QStringList found;
    for (const engine::Entry& entry : engine::list_directory(dir.path(), engine::held_entries)) {
        found.append(u"%1 %2 %3 %4 %5"_s.arg(entry.name, entry.path)
                         .arg(entry.is_dir)
                         .arg(entry.size)
                         .arg(entry.is_link));
    }
    QCOMPARE(found, (QStringList{u"alias %1 1 0 1"_s.arg(dir.at(u"real"_s)),
                                 u"real %1 1 0 0"_s.arg(dir.at(u"real"_s)),
                                 u"alias.txt %1 0 5 1"_s.arg(dir.at(u"real/file.txt"_s))}));
}

void TestEngine::pairing()
{
    // Items as name=checksum, "~" for one that was taken back; marks as one letter each.
    const QList<std::tuple<QString, QString, QString>> rows = {
        {u"a=1f"_s, u"a=1F"_s, u"i|i"_s},
        {u"a=1"_s, u"a=2"_s, u"d|d"_s},
        {u"a=1"_s, u"A=1"_s, u"n|n"_s},
        {u""_s, u""_s, u"|"_s},
        {u"a="_s, u"a="_s, u"i|i"_s},
        {u"a="_s, u"a=1"_s, u"d|d"_s},
        {u"a=1"_s, u"a="_s, u"-|-"_s},
        {u"a="_s, u"b="_s, u"-|-"_s},
        {u"a=~"_s, u"a="_s, u"-|-"_s},
        {u"a=~"_s, u"a=1"_s, u"d|d"_s},
        {u"a=1 a=2"_s, u"a=2 a=2 a=3"_s, u"di|din"_s},
        {u"a= a=1"_s, u"a=1 a= a=1"_s, u"d-|d-n"_s}};
    for (const auto& [first, second, marks] : rows) {
        const auto result = engine::pair_by_name(items(first), items(second));
        QCOMPARE(letters(result.first) + u'|' + letters(result.second), marks);
    }
    QRandomGenerator random(11);
    const auto random_items = [&] {
        QString text;
        for (quint32 i = random.bounded(12); i > 0; --i) {
            text += u"%1=%2 "_s.arg(QLatin1String("abc")[random.bounded(3)])
                        .arg(QStringList{u""_s, u"x"_s, u"X"_s, u"y"_s, u"~"_s}[random.bounded(5)]);
        }
        return items(text);
    };
    for (int i = 0; i < 2000; ++i) {
        const auto first = random_items();
        const auto second = random_items();
        const auto result = engine::pair_by_name(first, second);
        const auto expected = plain_rule(first, second);
        QCOMPARE(letters(result.first), letters(expected.first));
        QCOMPARE(letters(result.second), letters(expected.second));
    }
}

void TestEngine::checksum_files_are_read()
{
    const QByteArray a = digest_a + "  ";
    const QByteArray b = digest_b + "  ";
    const QList<std::pair<QByteArray, QByteArray>> rows = {
        {"# " + a + "z\n\n" + b + "y\n" + a + "x\n", "x=" + digest_a + " y=" + digest_b},
        {a + "x\r\n\r\n" + b + "y", "x=" + digest_a + " y=" + digest_b},
        {digest_a + " *x\n" + digest_b + " **y\n", "*y=" + digest_b + " x=" + digest_a},
        {digest_a + "\t x  y \t\n", "x  y=" + digest_a},
        {digest_a.toUpper() + "  x\n", "x=" + digest_a.toUpper()},
        {digest_a + digest_b + "  x\n", "x=" + digest_a + digest_b},
        {digest_a.chopped(1) + "  x\n" + digest_a.chopped(1) + "g  x\n " + a + "x\n", ""},
        {QString(32, QChar(0x0661)).toUtf8() + "  x\n", ""},
        {a + "x\n" + b + "x\n", "x=" + digest_b},
        {a + "sub/x\n", "sub/x=" + digest_a},
        {a + "back\\slash\n", "back\\slash=" + digest_a},
        {'\\' + a + "back\\\\slash\n\\" + b + "two\\nlines\n",
         "back\\slash=" + digest_a + " two\nlines=" + digest_b},
        {'\\' + a + "no such \\x\n", "no such \\x=" + digest_a},
        {a + QByteArray(70'000, 'n') + '\n' + b + "x\n", "x=" + digest_b},
        {QByteArray(3'000'000, '\0') + '\n' + b + "x\n", "x=" + digest_b},
        {a + QByteArray(4096, 'n') + '\n', QByteArray(4096, 'n') + '=' + digest_a}};
    TestDir dir;
    for (const auto& [content, expected] : rows) {
        QCOMPARE(listed_in(dir, content), QString::fromUtf8(expected));
    }
    for (const QString& name : {u"back\\slash"_s, u"two\nlines\r"_s, u"é"_s}) {
        const QByteArray line = engine::encode_checksum_text(
            engine::checksum_line(QString::fromLatin1(digest_a).toUpper(), name));
        QCOMPARE(listed_in(dir, line), name + u'=' + QString::fromLatin1(digest_a));
    }
    QVERIFY(!engine::read_checksum_file(dir.at(u"gone"_s)));
    QVERIFY(!engine::read_checksum_file(dir.at()));
}

void TestEngine::checksum_files_are_written_whole()
{
    using engine::Replace;
    TestDir dir;
    dir.createFile(u"old"_s, "old");
    dir.createDir(u"dir"_s);
    const auto write = [&](const QString& name, Replace replace) {
        return engine::write_checksum_file(dir.filePath(name), u"é\n"_s, replace);
    };
    QVERIFY(!write(u"old"_s, Replace::No));
    QCOMPARE(dir.read(u"old"_s), "old");
    for (const Replace replace : {Replace::No, Replace::Yes}) {
        QVERIFY(!write(u"dir"_s, replace) && !write(u"gone/new"_s, replace));
        QVERIFY(write(replace == Replace::No ? u"new"_s : u"old"_s, replace));
    }
    QCOMPARE(dir.read(u"new"_s), u"é\n"_s.toLocal8Bit());
    QCOMPARE(dir.read(u"old"_s), u"é\n"_s.toLocal8Bit());
    QCOMPARE(dir.entries(), u"dir, new, old"_s);
}

void TestEngine::run_delivers_everything_before_it_finishes()
{
    TestDir dir;
    const QString path = dir.createFile(u"file"_s, "x");
    constexpr int files = 3000;
    engine::HashPlan plan;
    for (int i = 0; i < files; ++i) {
        plan.steps.push_back({engine::HashStep::Kind::File, i, path});
    }
    QList<int> ended;
    bool over = false;
    engine::JobRun run({[&](engine::JobMessage& message) {
                            QCOMPARE(QThread::currentThread(), thread());
                            if (const auto* file = std::get_if<engine::FileEnded>(&message)) {
                                ended.append(file->row);
                            }
                        },
                        [&] { over = true; }});
    run.start(plan, false);
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

    // One that is deleted says nothing more.
    bool reached = false;
    auto deleted = std::make_unique<engine::JobRun>(engine::JobRun::Handler{
        [&](engine::JobMessage&) { reached = true; }, [&] { reached = true; }});
    deleted->start(plan, false);
    const QFuture<void> future = deleted->future();
    deleted.reset();
    QVERIFY(QThreadPool::globalInstance()->waitForDone(60000));
    QCoreApplication::processEvents();
    QVERIFY(!reached && future.isFinished());
}

QTEST_GUILESS_MAIN(TestEngine)
#include "test_engine.moc"
