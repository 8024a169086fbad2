// What the pane writes into checksum files, and what stops it.

#include "tests/checksum_bench.h"

#include <QDir>

using namespace Qt::StringLiterals;
using Bench = ChecksumBench;

namespace {

const QString not_created = u"Impossible de créer le fichier"_s;

} // namespace

class TestChecksumWriter : public QObject
{
    Q_OBJECT

  private slots:
    void file_writer_data() { add_algorithms(); }
    void file_writer();
    void directory_writer_data() { add_algorithms(); }
    void directory_writer();
    void writers_leave_out_what_has_no_digest();
    void file_writer_goes_into_selected_directories();
    void file_writer_reports_and_goes_on();
    void failed_directory_writer_leaves_its_traces();
    void empty_directory_gets_no_file();
    void stopped_writer_writes_what_it_has();
};

void TestChecksumWriter::file_writer()
{
    QFETCH(QCryptographicHash::Algorithm, algorithm);
    Bench bench(algorithm);
    const QString kept = u"kept.txt"_s + bench.suffix;
    bench.dir.createFiles(words(u"a.txt, B.txt, kept.txt, other.txt"_s));
    bench.dir.createFile(kept, "old");
    bench.first->upper = true;
    bench.open();
    QVERIFY(bench.write_files({u"kept.txt"_s, u"a.txt"_s, u"B.txt"_s}));
    for (const QString& name : {u"a.txt"_s, u"B.txt"_s}) {
        QCOMPARE(bench.dir.read(name + bench.suffix), bench.lines({name}));
    }
    QCOMPARE(bench.dir.read(kept), "old");
    QCOMPARE(words(bench.dir.entries()).size(), 7);
    QCOMPARE(bench.left_at(), kept + u" | "_s + kept);
    QCOMPARE(bench.boxes.take(), QStringList());
    QVERIFY(bench.plain_job_stays_plain());
    QCOMPARE(checksum_at(*bench.first, u"a.txt"_s), reference_digest("a.txt", algorithm).toUpper());
}

void TestChecksumWriter::directory_writer()
{
    QFETCH(QCryptographicHash::Algorithm, algorithm);
    Bench bench(algorithm);
    const QString name = bench.file_of_all;
    bench.dir.createFiles(
        words(u"a.txt, B.txt, é (1).tar.gz, .hidden, sub/inner, x.md5, x.SHA1, left.out"_s));
    bench.dir.createFile(name, QByteArray(100'000, 'o'));
    bench.first->upper = true;
    bench.first->set_exclus(u"*.out"_s);
    bench.open();
    const QString before = bench.dir.entries();
    for (int times = 0; times < 2; ++times) {
        QVERIFY(bench.write_directory_file());
        QCOMPARE(bench.dir.read(name), bench.lines({u"B.txt"_s, u"a.txt"_s, u"é (1).tar.gz"_s}));
        QCOMPARE(bench.left_at(), name + u" | "_s + name);
        QCOMPARE(bench.first->exclusions, QStringList{u"out"_s});
    }
    QCOMPARE(bench.dir.entries(), before);
    QVERIFY(bench.plain_job_stays_plain());
}

void TestChecksumWriter::writers_leave_out_what_has_no_digest()
{
    Bench bench;
    bench.dir.createFiles({u"a.txt"_s});
    if (make_unreadable(bench.dir, u"secret"_s).isEmpty()) {
        QSKIP("everything is readable here");
    }
    bench.open();
    QVERIFY(bench.write_files({u"a.txt"_s, u"secret"_s}));
    QVERIFY(bench.write_directory_file());
    QCOMPARE(bench.dir.entries(), u"a.txt, a.txt.md5, secret, "_s + bench.file_of_all);
    QCOMPARE(bench.dir.read(bench.file_of_all), bench.lines({u"a.txt"_s}));
    QCOMPARE(bench.boxes.take(), QStringList());
}

void TestChecksumWriter::file_writer_goes_into_selected_directories()
{
    Bench bench;
    bench.dir.createFiles({u"a.txt"_s, u"sub/inner.txt"_s});
    bench.open();
    QVERIFY(bench.write_files({u"sub"_s})); // no file is chosen, so none is written
    QVERIFY(bench.dir.read(u"sub/inner.txt.md5"_s).isNull());
    QVERIFY(bench.write_files({u"sub"_s, u"a.txt"_s}));
    QCOMPARE(bench.dir.read(u"sub/inner.txt.md5"_s), bench.lines({u"sub/inner.txt"_s}));
    QCOMPARE(bench.dir.read(u"a.txt.md5"_s), bench.lines({u"a.txt"_s}));
}

void TestChecksumWriter::file_writer_reports_and_goes_on()
{
    Bench bench;
    const QString longest(253, u'n'); // leaves no room for a suffix
    bench.dir.createFiles({u"a.txt"_s, longest, u"z.txt"_s});
    bench.open();
    QVERIFY(bench.write_files({u"z.txt"_s, longest, u"a.txt"_s}));
    QCOMPARE(bench.boxes.take(),
             (QStringList{not_created, not_created + u" %1.md5"_s.arg(longest)}));
    QCOMPARE(bench.dir.entries(), u"a.txt, a.txt.md5, %1, z.txt, z.txt.md5"_s.arg(longest));
    QCOMPARE(bench.left_at(), u"z.txt.md5 | z.txt.md5"_s);
    QVERIFY(bench.plain_job_stays_plain());
}

void TestChecksumWriter::failed_directory_writer_leaves_its_traces()
{
    Bench bench;
    const QString name = bench.file_of_all;
    bench.dir.createFiles({u"a.txt"_s});
    bench.dir.createDir(name);
    bench.open();
    QVERIFY(bench.write_directory_file());
    QCOMPARE(bench.boxes.take(), (QStringList{not_created, not_created + u' ' + name}));
    QCOMPARE(bench.first->exclusions, left_exclusions);
    QCOMPARE(bench.dir.entries(), u"a.txt, "_s + name);
    QVERIFY(!bench.left_at().contains(name));

    // Nothing of the failed run is written later, wherever the pane is by then.
    QVERIFY(QDir().rmdir(bench.dir.at(name)));
    QVERIFY(bench.plain_job_stays_plain());
    QVERIFY(bench.write_files({u"a.txt"_s}));
    QCOMPARE(bench.dir.entries(), u"a.txt, a.txt.md5"_s);

    QVERIFY(bench.write_directory_file());
    QCOMPARE(bench.boxes.take(), QStringList());
    QCOMPARE(bench.dir.read(name), bench.lines({u"a.txt"_s}));
    QCOMPARE(bench.left_at(), name + u" | "_s + name);
    // The successful run took back its own pair only.
    QCOMPARE(bench.first->exclusions, left_exclusions);
    QVERIFY(bench.plain_job_stays_plain());
}

void TestChecksumWriter::empty_directory_gets_no_file()
{
    Bench bench;
    bench.dir.createDir(u"sub"_s);
    bench.open();
    QVERIFY(bench.write_directory_file());
    QCOMPARE(bench.dir.entries(), u"sub"_s);
    QCOMPARE(bench.boxes.take(), QStringList());
    QCOMPARE(bench.first->exclusions, left_exclusions);
}

void TestChecksumWriter::stopped_writer_writes_what_it_has()
{
    Bench bench;
    bench.dir.createFiles({u"a.txt"_s});
    HUGE_FILE_OR_SKIP(bench.dir, u"huge"_s);
    bench.open();
    // A request during the job forgets the digests of the first one and starts no job of its own.
    bench.start_files({u"a.txt"_s, u"huge"_s});
    QTRY_VERIFY(!checksum_at(*bench.first, u"a.txt"_s).isEmpty());
    bench.first->act_md5_file->trigger();
    QVERIFY(bench.stop_behind_a());
    QCOMPARE(bench.dir.entries(), u"a.txt, huge"_s);

    bench.start_directory_file();
    QVERIFY(!bench.radio(u"SHA1"_s)->isEnabled());
    QVERIFY(bench.stop_behind_a());
    QCOMPARE(bench.dir.read(bench.file_of_all), bench.lines({u"a.txt"_s}));
    QCOMPARE(bench.first->exclusions, QStringList());
    QVERIFY(bench.radio(u"SHA1"_s)->isEnabled());

    bench.start_files({u"a.txt"_s, u"huge"_s});
    QVERIFY(bench.stop_behind_a());
    QCOMPARE(bench.dir.entries(), u"a.txt, a.txt.md5, huge, "_s + bench.file_of_all);
    QVERIFY(bench.plain_job_stays_plain());
}

QTEST_MAIN(TestChecksumWriter)
#include "test_checksum_writer.moc"
