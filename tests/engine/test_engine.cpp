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
    void pairing();
    void checksum_files_are_read();
    void checksum_files_are_written_whole();
    void run_delivers_everything_before_it_finishes();
};

void TestEngine::texts()
{
    const auto each = [](const QString& table, const std::function<QString(qint64)>& text_of) {
        for (const QString& row : table.split(u", "_s)) {
            QCOMPARE(text_of(row.section(u' ', 0, 0).toLongLong()), row.section(u' ', 1));
        }
    };
    each(u"0 0.00s, 999 0.99s, 2100 2.00s, 2105 2.05s, 59999 59.99s, 60000 01:00s., "
         "3723456 01:02:03., 360000000 100:00:00."_s,
         format_time);
    each(u"0 1 Ko, 1000 1 Ko, 1536 2 Ko, 1023999 1000 Ko, 1024000 1 Mo, 1048575999 1000 Mo, "
         "1048576000 1 Go, 1073741823999 1000 Go, 1073741824000 Trop Gros"_s,
         format_size);
}

void TestEngine::exclusions()
{
    // What is typed, the suffixes parted by bars, and how these are shown.
    for (const QString& row : {u";;;//"_s, u"*.jpg;tmp;*.dat/jpg|tmp|dat/*.jpg;*.tmp;*.dat"_s,
                               u"a; *.b/a| b/*.a;*. b"_s, u"*.a*.b/ab/*.ab"_s}) {
        const QStringList suffixes = engine::parse_exclusions(row.section(u'/', 0, 0));
        QCOMPARE(suffixes.join(u'|'), row.section(u'/', 1, 1));
        QCOMPARE(engine::format_exclusions(suffixes), row.section(u'/', 2));
    }
    for (const QString& row :
         {u"JPG yes b.jpg"_s, u"jpg yes b.JPG"_s, u"gz yes b.tar.gz"_s, u"tar.gz no b.tar.gz"_s,
          u"*. yes a.d/README"_s, u"jpg no a.jpg/README"_s, u" no README"_s}) {
        QCOMPARE(engine::is_excluded(engine::parse_exclusions(row.section(u' ', 0, 0)),
                                     u"/a/"_s + row.section(u' ', 2)),
                 row.section(u' ', 1, 1) == "yes"_L1);
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

void TestEngine::pairing()
{
    // Items as name=checksum, "~" for one that was taken back; marks as one letter each.
    for (const QString& row :
         {u"a=1f/a=1F/i|i"_s, u"a=1/a=2/d|d"_s, u"a=1/A=1/n|n"_s, u"//|"_s, u"a=/a=/i|i"_s,
          u"a=/a=1/d|d"_s, u"a=1/a=/-|-"_s, u"a=/b=/-|-"_s, u"a=~/a=/-|-"_s, u"a=~/a=1/d|d"_s,
          u"a=1 a=2/a=2 a=2 a=3/di|din"_s, u"a= a=1/a=1 a= a=1/d-|d-n"_s}) {
        const auto result =
            engine::pair_by_name(items(row.section(u'/', 0, 0)), items(row.section(u'/', 1, 1)));
        QCOMPARE(letters(result.first) + u'|' + letters(result.second), row.section(u'/', 2));
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
