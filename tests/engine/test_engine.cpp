// The widget-free parts: texts, exclusions, digests, listings, pairing, checksum files and runs.

#include "engine/checksum_file.h"
#include "engine/duration_text.h"
#include "engine/exclusions.h"
#include "engine/file_hasher.h"
#include "engine/listing.h"
#include "engine/pairing.h"
#include "platform/volumes.h"
#include "rows/size_text.h"
#include "tests/support/test_dir.h"

#include <QtTest>
#include <numeric>

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
        const bool found = expected->contains(path) && !expected->contains(path + u'x');
        if (!found) { return u"not found again"_s; }
    }
    return expected ? lines.join(u' ') : u"unreadable"_s;
}

QList<engine::PairingItem> items(const QString& texts)
{
    QList<engine::PairingItem> list;
    for (const QString& text : texts.split(u' ', Qt::SkipEmptyParts)) {
        const bool cleared = text.endsWith(u'~');
        list.append({text[0], cleared ? QString() : text.section(u'=', 1), cleared});
    }
    return list;
}

QString letters(const QList<engine::PairingItem>& first, const QList<engine::PairingItem>& second)
{
    engine::Pairing pairing({first.size(), [&](qsizetype i) { return first[i]; }},
                            {second.size(), [&](qsizetype i) { return second[i]; }});
    while (!pairing.advance(1)) {}
    const engine::PairingResult marks = pairing.result();
    QString text;
    for (const engine::Mark mark : marks.first + marks.second) {
        text += QLatin1String("-idnc")[static_cast<int>(mark)];
    }
    return text.insert(marks.first.size(), u'|');
}

/// The rule as it is told: for every item of the first list, the second one from its start.
QString plain_rule(const QList<engine::PairingItem>& first, QList<engine::PairingItem> second)
{
    QString left(first.size(), u'-');
    QString right(second.size(), u'-');
    for (qsizetype a = 0; a < first.size(); ++a) {
        const auto is_partner = [&](const auto& item) { return item.name == first[a].name; };
        const auto b = std::find_if(second.begin(), second.end(), is_partner) - second.begin();
        const QString one = first[a].checksum.toLower();
        if (b == second.size()) {
            left[a] = one.isEmpty() ? u'-' : u'n';
            continue;
        }
        const QString two = second[b].checksum.toLower();
        const bool silent = one.isEmpty() && (first[a].cleared || second[b].cleared);
        if (one == two ? !silent : !two.isEmpty()) {
            left[a] = right[b] = one == two ? u'i' : u'd';
        }
        second[b].name = u"taken"_s;
    }
    for (qsizetype b = 0; b < second.size(); ++b) {
        const bool alone = second[b].name != "taken"_L1 && !second[b].checksum.isEmpty();
        right[b] = alone ? u'n' : right[b];
    }
    return left + u'|' + right;
}

} // namespace

class TestEngine : public QObject
{
    Q_OBJECT

  private slots:
    void texts_and_exclusions();
    void digests_equal_the_reference();
    void listing_sorts_as_the_toolkit_does();
    void pairing();
    void checksum_files_are_read();
    void checksum_files_are_written_whole();
};

void TestEngine::texts_and_exclusions()
{
    for (const QString& row :
         u"0 0.00s, 999 0.99s, 2105 2.05s, 59999 59.99s, 60000 01:00s., "
         "3723456 01:02:03., 360000000 100:00:00., 0 1 Ko, 1000 1 Ko, 1536 2 Ko, "
         "1023999 1000 Ko, 1024000 1 Mo, 1048575999 1000 Mo, 1048576000 1 Go, "
         "1073741823999 1000 Go, 1073741824000 Trop Gros"_s.split(u", "_s)) {
        const qint64 number = row.section(u' ', 0, 0).toLongLong();
        const QString text = row.section(u' ', 1);
        QCOMPARE(text.contains(u'.') ? format_time(number) : format_size(number), text);
    }
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
    const QString root = QDir::isAbsolutePath(u"C:/"_s) ? u"C:/"_s : u"/media/stick"_s;
    QCOMPARE(platform::fallback_roots(platform::volume_entry({root, u"/a label"_s}))[0], root);
}

void TestEngine::digests_equal_the_reference()
{
    TestDir dir;
    for (const auto algorithm : {QCryptographicHash::Md5, QCryptographicHash::Sha1}) {
        engine::FileHasher hasher(algorithm, {});
        for (const qsizetype size : {0, 1, 55, 56, 64, 4096, 0x40000, 0x40001, 700'000}) {
            QByteArray bytes(size, 'x');
            std::iota(bytes.begin(), bytes.end(), '\0');
            const QString path = dir.createFile(u"file"_s, bytes);
            QList<int> percents;
            const auto result = hasher.hash(path, {[] {}, [&](int p) { percents.append(p); }, {}});
            QCOMPARE(result.digest.toLatin1(), QCryptographicHash::hash(bytes, algorithm).toHex());
            QVERIFY(std::is_sorted(percents.begin(), percents.end()));
            QCOMPARE(percents.isEmpty() ? 0 : percents.last(), size == 0 ? 0 : 100);
        }
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
        if (filters == engine::shown_entries) { expected.prepend(u".."_s); } // in every locale
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
        const auto first = items(row.section(u'/', 0, 0));
        const auto second = items(row.section(u'/', 1, 1));
        QCOMPARE(letters(first, second), row.section(u'/', 2));
        QCOMPARE(plain_rule(first, second), row.section(u'/', 2));
    }
    QRandomGenerator random(11);
    const auto random_items = [&] {
        QString text;
        for (int i = random.bounded(12); i > 0; --i) {
            text += u"%1=%2 "_s.arg(QLatin1String("abc")[random.bounded(3)])
                        .arg(QStringList{u""_s, u"x"_s, u"X"_s, u"y"_s, u"~"_s}[random.bounded(5)]);
        }
        return items(text);
    };
    for (int i = 0; i < 2000; ++i) {
        const auto first = random_items();
        const auto second = random_items();
        QCOMPARE(letters(first, second), plain_rule(first, second));
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
        {'\\' + a + "no such \\x\n", ""},
        {a + QByteArray(70'000, 'n') + '\n' + b + "x\n", "x=" + digest_b},
        {QByteArray(3'000'000, '\0') + '\n' + b + "x\n", "x=" + digest_b},
        {a + QByteArray(4096, 'n') + '\n', QByteArray(4096, 'n') + '=' + digest_a}};
    TestDir dir;
    for (const auto& [content, expected] : rows) {
        QCOMPARE(listed_in(dir, content), QString::fromUtf8(expected));
    }
    const QString digest = QString::fromLatin1(digest_a);
    for (const QString& name : {u"back\\slash"_s, u"two\nlines\r"_s, u"é"_s}) {
        const QString line = engine::checksum_line(digest.toUpper(), name);
        QCOMPARE(listed_in(dir, engine::encode_checksum_text(line)), name + u'=' + digest);
    }
    QVERIFY(!engine::read_checksum_file(dir.at(u"gone"_s)));
    QVERIFY(!engine::read_checksum_file(dir.at()));
}

void TestEngine::checksum_files_are_written_whole()
{
    TestDir dir;
    dir.createFile(u"old"_s, "old");
    dir.createDir(u"dir"_s);
    for (const auto replace : {engine::Replace::No, engine::Replace::Yes}) {
        QString done;
        for (const QString& name : {u"dir"_s, u"gone/new"_s, u"new"_s, u"old"_s}) {
            done +=
                engine::write_checksum_file(dir.filePath(name), u"é\n"_s, replace) ? name : u""_s;
        }
        const bool anew = replace == engine::Replace::Yes;
        QCOMPARE(done, anew ? u"newold"_s : u"new"_s);
        QCOMPARE(dir.read(u"old"_s), anew ? u"é\n"_s.toLocal8Bit() : "old");
        QCOMPARE(dir.entries(), u"dir, new, old"_s);
    }
    QCOMPARE(dir.read(u"new"_s), u"é\n"_s.toLocal8Bit());
}

QTEST_GUILESS_MAIN(TestEngine)
#include "test_engine.moc"
