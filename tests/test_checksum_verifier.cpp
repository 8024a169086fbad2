// What the pane finds when it verifies a checksum file, and what other people's programs make of
// ours.

#include "tests/checksum_bench.h"

#include <QProcess>
#include <QStandardPaths>

using namespace Qt::StringLiterals;
using Bench = ChecksumBench;

namespace {

const QByteArray some_digest(32, 'a');
const QStringList ok_box{u"Ok"_s, u"Aucune erreur trouvée !"_s};
const QString not_opened = u"Impossible d'ouvrir le fichier"_s;

QStringList error_box(const QStringList& lines)
{
    QString text = u"<strong><u>Erreurs avec les fichiers suivants :<u/></strong><br /><br />"_s;
    for (const QString& line : lines) {
        text += line + u"<br />"_s;
    }
    return {u"Ko"_s, text};
}

} // namespace

class TestChecksumVerifier : public QObject
{
    Q_OBJECT

  private slots:
    void verifier_finds_no_error_data() { add_algorithms(); }
    void verifier_finds_no_error();
    void verifier_reports_data();
    void verifier_reports();
    void verifier_refuses_data();
    void verifier_refuses();
    void verifier_loses_its_file();
    void stopped_verifier_reports_what_is_missing();
    void long_report_stays_on_the_screen();

    void other_programs_agree_data();
    void other_programs_agree();
};

void TestChecksumVerifier::verifier_finds_no_error()
{
    QFETCH(QCryptographicHash::Algorithm, algorithm);
    Bench bench(algorithm);
    const QString name = u"list"_s + bench.suffix.toUpper();
    const QStringList listed = {u"a.txt"_s, u"empty"_s, u"inner.sha1"_s}; // of whatever type
    bench.dir.createFiles(listed + QStringList{u"not listed"_s});
    bench.dir.createFile(name, bench.lines(listed));
    bench.first->upper = true;
    bench.first->set_exclus(u"txt"_s);
    bench.open();
    // The algorithm comes from the suffix, whatever was chosen, and is locked for the run.
    bench.radio(bench.md5 ? u"SHA1"_s : u"MD5"_s)->setChecked(true);
    select_names(*bench.first, {name});
    activate(*bench.first, name);
    const QString chosen = bench.md5 ? u"MD5"_s : u"SHA1"_s;
    QVERIFY(bench.radio(chosen)->isChecked());
    QVERIFY(!bench.radio(u"MD5"_s)->isEnabled() && !bench.radio(u"SHA1"_s)->isEnabled());
    QCOMPARE(bench.second->headerItem()->text(ColHash), chosen);
    QVERIFY(bench.wait_idle());

    QCOMPARE(bench.boxes.take(), ok_box);
    QVERIFY(bench.boxes.last_has_picture);
    // Of the listed files; the checksum file is no longer selected.
    QVERIFY(bench.first->status_label->text().startsWith(u"Fini. 3 fichiers traités en "_s));
    QVERIFY(bench.radio(u"MD5"_s)->isEnabled() && bench.radio(u"SHA1"_s)->isEnabled());
    QCOMPARE(bench.left_at(), name + u" | "_s + name);
    QCOMPARE(bench.first->exclusions, QStringList{u"txt"_s});
    QVERIFY(bench.plain_job_stays_plain());
}

void TestChecksumVerifier::verifier_reports_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("errors"); // less the directory
    const QByteArray good = reference_digest("a").toLatin1();
    const auto row = [](const char* title, const QByteArray& content, const QStringList& errors) {
        QTest::newRow(title) << content << errors;
    };
    const QString different = u"Différent => "_s;
    const QString missing = u"Manquant  => "_s;
    row("changed", some_digest + "  a.txt\n", {different + u"a.txt"_s});
    row("capitals", good.toUpper() + "  a.txt\n", {different + u"a.txt"_s});
    row("64 digits", good + some_digest + "  a.txt\n", {different + u"a.txt"_s});
    row("missing", good + "  gone\n", {missing + u"gone"_s});
    row("other case", good + "  A.TXT\n", {missing + u"A.TXT"_s});
    row("below", good + "  sub/in\n", {missing + u"sub/in"_s});
    row("beside", good + "  ../a.txt\n", {missing + u"../a.txt"_s});
    row("itself", good + "  list.md5\n", {missing + u"list.md5"_s});
    row("no name", good + "\n", {missing});
    row("markup", good + "  <b>&\n", {missing + u"&lt;b&gt;&amp;"_s});
    row("in the order of paths",
        good + "  z\n" + good + "  a.txt\n" + some_digest + "  b.txt\n" + good + "  B\n",
        {missing + u"B"_s, different + u"b.txt"_s, missing + u"z"_s});
}

void TestChecksumVerifier::verifier_reports()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, errors);
    Bench bench;
    bench.dir.createFile(u"a.txt"_s, "a");
    bench.dir.createFile(u"b.txt"_s, "b");
    bench.dir.createFile(u"sub/in"_s, "a");
    bench.dir.createFile(u"list.md5"_s, content);
    bench.open();
    QVERIFY(bench.verify(u"list.md5"_s));
    errors.replaceInStrings(u"=> "_s, u"=> "_s + bench.dir.at().toHtmlEscaped() + u'/');
    QCOMPARE(bench.boxes.take(), error_box(errors));
    QCOMPARE(bench.left_at(), u"list.md5 | list.md5"_s);
    QVERIFY(bench.plain_job_stays_plain());
}

void TestChecksumVerifier::verifier_refuses_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("algorithm");
    QTest::addColumn<QStringList>("box"); // %1 is the directory
    const QStringList nothing{u"Rien"_s, u"<strong><u>Rien à vérifier !<u/></strong><br />"_s};
    QTest::newRow("directory") << u"x.y.md5/in"_s << u"MD5"_s
                               << QStringList{not_opened, not_opened + u" %1/x.y..md5"_s};
    QTest::newRow("directory, longer suffix")
        << u"x.md5sum/in"_s << u"SHA1"_s << QStringList{not_opened, not_opened + u" %1/x..sha1"_s};
    QTest::newRow("comments") << u"x.md5"_s << u"MD5"_s << nothing;
    QTest::newRow("comments, longer suffix") << u"x.md5sum"_s << u"SHA1"_s << nothing;
}

void TestChecksumVerifier::verifier_refuses()
{
    QFETCH(QString, name);
    QFETCH(QString, algorithm);
    QFETCH(QStringList, box);
    Bench bench;
    bench.dir.createFile(u"a.txt"_s, "a");
    bench.dir.createFile(name, checksum_header);
    bench.open();
    name = name.section(u'/', 0, 0);
    select_names(*bench.first, {u"a.txt"_s, name});
    activate(*bench.first, name);
    QVERIFY(!bench.first->job_running());
    box.replaceInStrings(u"%1"_s, bench.dir.at());
    QCOMPARE(bench.boxes.take(), box);
    QVERIFY(bench.radio(algorithm)->isChecked());
    // No job will end and unlock the choice.
    QVERIFY(bench.radio(algorithm)->isEnabled());
    QCOMPARE(bench.first->exclusions, left_exclusions);
    QVERIFY(bench.plain_job_stays_plain());
}

void TestChecksumVerifier::verifier_loses_its_file()
{
    Bench bench;
    bench.dir.createFiles({u"a.txt"_s});
    bench.dir.createFile(u"list.md5"_s, bench.lines({u"a.txt"_s}));
    bench.open();
    activate(*bench.first, u"list.md5"_s);
    // The job's end cannot arrive before the event loop turns.
    const QString list = bench.dir.at(u"list.md5"_s);
    QVERIFY(QFile::remove(list));
    QVERIFY(bench.wait_idle());
    QCOMPARE(bench.boxes.take(), (QStringList{not_opened, not_opened + u' ' + list}));
    QCOMPARE(bench.first->exclusions, left_exclusions);
    QVERIFY(bench.plain_job_stays_plain());
}

void TestChecksumVerifier::stopped_verifier_reports_what_is_missing()
{
    Bench bench;
    bench.dir.createFiles({u"a.txt"_s});
    bench.dir.createFile(u"list.md5"_s, bench.lines({u"a.txt"_s}) + some_digest + "  huge\n");
    HUGE_FILE_OR_SKIP(bench.dir, u"huge"_s);
    bench.open();
    activate(*bench.first, u"list.md5"_s);
    QVERIFY(bench.stop_behind_a());
    QCOMPARE(bench.boxes.take(), error_box({u"Manquant  => "_s + bench.dir.at(u"huge"_s)}));
    QCOMPARE(bench.first->exclusions, QStringList());
}

void TestChecksumVerifier::long_report_stays_on_the_screen()
{
    Bench bench;
    QByteArray list;
    QStringList errors;
    for (int i = 10'000; i < 12'000; ++i) {
        const QString name = u"a file that is gone "_s + QString::number(i);
        list += some_digest + "  " + name.toUtf8() + '\n';
        errors.append(u"Manquant  => "_s + bench.dir.at(name));
    }
    bench.dir.createFile(u"list.md5"_s, list);
    bench.open();
    QVERIFY(bench.verify(u"list.md5"_s));
    // So many lines have a view of their own.
    QCOMPARE(bench.boxes.take(), error_box({}));
    QCOMPARE(bench.boxes.last_lines, errors);
    QVERIFY(bench.boxes.last_fits_the_screen);
}

namespace {

/// Runs a program in a directory; answers its output, or null when it fails. Its errors go to the
/// test's own.
QByteArray run_program(const QString& program, const QStringList& arguments, const QString& where)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(where);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    const bool good = process.waitForFinished(60000) &&
                      process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return good ? process.readAllStandardOutput() : QByteArray();
}

} // namespace

void TestChecksumVerifier::other_programs_agree_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("option"); // with which it lists files
    QTest::addColumn<QCryptographicHash::Algorithm>("algorithm");
    QTest::newRow("md5sum") << u"md5sum"_s << u"-t"_s << QCryptographicHash::Md5;
    QTest::newRow("sha1sum") << u"sha1sum"_s << u"-b"_s << QCryptographicHash::Sha1;
    QTest::newRow("rhash, MD5") << u"rhash"_s << u"--md5"_s << QCryptographicHash::Md5;
    QTest::newRow("rhash, SHA1") << u"rhash"_s << u"--sha1"_s << QCryptographicHash::Sha1;
}

void TestChecksumVerifier::other_programs_agree()
{
    QFETCH(QString, program);
    QFETCH(QString, option);
    QFETCH(QCryptographicHash::Algorithm, algorithm);
    if (QStandardPaths::findExecutable(program).isEmpty()) {
        QSKIP("the program is not installed");
    }
    const QStringList names = words(
        u"with blanks.txt, accentué à Noël.txt, brackets (1) [2].txt, -dash, a.b.tar.gz, 日本.txt"_s);
    Bench bench(algorithm);
    bench.dir.createFiles(names);
    bench.open();
    // Ours with theirs.
    QVERIFY(bench.write_directory_file());
    QVERIFY(bench.write_files(names));
    for (const QString& name : QStringList{bench.file_of_all} + names) {
        const bool of_all = name == bench.file_of_all;
        const QStringList arguments = {u"-c"_s, u"--"_s, of_all ? name : name + bench.suffix};
        const QByteArray told = run_program(program, arguments, bench.dir.at());
        const qsizetype files = of_all ? names.size() : 1;
        QCOMPARE(told.count("OK"), files + (program == "rhash"_L1 ? 1 : 0));
    }
    // Theirs with ours, whatever the line ends.
    const QByteArray list =
        run_program(program, QStringList{option, u"--"_s} + names, bench.dir.at());
    QCOMPARE(list.count('\n'), names.size());
    for (const QByteArray line_end : {"\n", "\r\n"}) {
        bench.dir.createFile(u"list"_s + bench.suffix, QByteArray(list).replace("\n", line_end));
        bench.first->Reset();
        QVERIFY(bench.verify(u"list"_s + bench.suffix));
        QCOMPARE(bench.boxes.take(), ok_box);
    }
    bench.dir.createFile(u"-dash"_s, "changed");
    QVERIFY(run_program(program, {u"-c"_s, bench.file_of_all}, bench.dir.at()).isNull());
    QVERIFY(bench.verify(u"list"_s + bench.suffix));
    QCOMPARE(bench.boxes.take(), error_box({u"Différent => "_s + bench.dir.at(u"-dash"_s)}));
}

QTEST_MAIN(TestChecksumVerifier)
#include "test_checksum_verifier.moc"
