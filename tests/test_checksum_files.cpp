// Checksum files: how they are read and written, and the pane's writer and verifier, alone and with
// other people's programs.

#include "engine/checksum_file.h"
#include "tests/pane_fixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProcess>
#include <QRandomGenerator>
#include <QScreen>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using engine::Replace;

namespace {

using Digests = QMap<QString, QString>;

const QByteArray digest_a(32, 'a');
const QByteArray digest_b(32, 'b');
const QByteArray header =
    u"# Fichier créé avec Tavrel\n# https://tavrel.example/\n#\n\n"_s.toLocal8Bit();

/// Notes the message boxes that open while it lives, and closes each by its only button.
class BoxCatcher
{
  public:
    BoxCatcher()
    {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
        timer_.start(1);
    }

    /// Title and text of every box since the last call.
    QStringList take() { return std::exchange(texts_, {}); }

    bool last_fits_the_screen = false;
    bool last_has_picture = false;
    QStringList last_lines; ///< of the view that a long report has

  private:
    void look()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(widget);
            if (box && box->isVisible()) {
                texts_ << box->windowTitle() << box->text();
                last_fits_the_screen =
                    box->screen()->availableGeometry().contains(box->frameGeometry());
                const auto* view = box->findChild<QPlainTextEdit*>();
                last_lines =
                    view ? view->toPlainText().split(u'\n', Qt::SkipEmptyParts) : QStringList();
                last_has_picture =
                    box->icon() == QMessageBox::NoIcon && !box->iconPixmap().isNull();
                QCOMPARE(box->buttons().size(), 1);
                box->buttons().first()->click();
                return;
            }
        }
    }

    QStringList texts_;
    QTimer timer_;
};

/// The first pane of a window, shown on a directory of the test.
class Bench : public WindowFixture
{
  public:
    explicit Bench(QCryptographicHash::Algorithm algorithm = QCryptographicHash::Md5)
        : algorithm_(algorithm), suffix(md5() ? u".md5"_s : u".sha1"_s)
    {
        dir.createDir(u"Photos"_s);
    }

    bool md5() const { return algorithm_ == QCryptographicHash::Md5; }

    void create(const QString& name, const QByteArray& content)
    {
        dir.createFile(u"Photos/"_s + name, content);
    }

    /// A file that takes hours to read; false where there is none.
    bool create_endless(const QString& name)
    {
        QFile file(dir.filePath(u"Photos/"_s + name));
        return file.open(QIODevice::WriteOnly) && file.resize(qint64(1) << 40);
    }

    void open() { first->changeModel(path()); }
    QString path(const QString& name = {}) const
    {
        return dir.at(name.isEmpty() ? u"Photos"_s : u"Photos/"_s + name);
    }
    QByteArray read(const QString& name) const { return dir.read(u"Photos/"_s + name); }
    QStringList names() const
    {
        return QDir(path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    QByteArray line(const QString& name, const QByteArray& content) const
    {
        return reference_digest(content, algorithm_).toLatin1() + "  " + name.toLocal8Bit() + '\n';
    }

    /// Chooses the command that writes a file for each selected one, and awaits its end.
    bool write_files(const QStringList& selected)
    {
        select_names(*first, selected);
        (md5() ? first->act_md5_file : first->act_sha1_file)->trigger();
        return wait_idle();
    }

    void start_directory_file()
    {
        (md5() ? first->act_md5_dir_file : first->act_sha1_dir_file)->trigger();
    }
    bool write_directory_file()
    {
        start_directory_file();
        return wait_idle();
    }

    void activate(const QString& name) { emit first->itemActivated(find_row(*first, name), 0); }
    bool verify(const QString& name)
    {
        activate(name);
        return wait_idle();
    }

    /// What the view was left at: the text of the status bar, then the names of the selected rows.
    QStringList left_at() const
    {
        QStringList names{window->statusBar()->currentMessage()};
        for (const QTreeWidgetItem* row : first->selectedItems()) {
            names.append(row->text(ColName));
        }
        return names;
    }

    /// Whether a plain job is nothing but that: no writer or verifier hangs on its end, for either
    /// would list the directory anew and report or write something.
    bool plain_job_stays_plain(const QString& name)
    {
        const QStringList before = names();
        select_names(*first, {name});
        first->HashThis();
        return wait_idle() && names() == before && boxes.take().isEmpty() &&
               !checksum_at(*first, name).isEmpty();
    }

    TestDir dir;
    BoxCatcher boxes;

  private:
    QCryptographicHash::Algorithm algorithm_;

  public:
    QString suffix;
};

const QString ok_title = u"Ok"_s;
const QString ok_text = u"Aucune erreur trouvée !"_s;
const QStringList pair{u"sha1"_s, u"md5"_s};

QString report(const QStringList& lines)
{
    QString text = u"<strong><u>Erreurs avec les fichiers suivants :<u/></strong><br /><br />"_s;
    for (const QString& line : lines) {
        text += line + u"<br />"_s;
    }
    return text;
}

void add_algorithms()
{
    QTest::addColumn<QCryptographicHash::Algorithm>("algorithm");
    QTest::newRow("MD5") << QCryptographicHash::Md5;
    QTest::newRow("SHA1") << QCryptographicHash::Sha1;
}

} // namespace

Q_DECLARE_METATYPE(QCryptographicHash::Algorithm)

class TestChecksumFiles : public QObject
{
    Q_OBJECT

  private slots:
    void reading_rules_data();
    void reading_rules();
    void endless_lines_cost_no_memory_data();
    void endless_lines_cost_no_memory();
    void a_million_lines_are_read();
    void written_whole_or_not_at_all_data();
    void written_whole_or_not_at_all();
    void full_disk_leaves_the_older_file();

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
    void request_during_a_job_arms_anew();

    void verifier_finds_no_error_data() { add_algorithms(); }
    void verifier_finds_no_error();
    void verifier_reports_data();
    void verifier_reports();
    void verifier_refuses_data();
    void verifier_refuses();
    void verifier_hashes_whatever_its_type();
    void verifier_loses_its_file();
    void stopped_verifier_reports_what_is_missing();
    void long_report_stays_on_the_screen();

    void other_programs_accept_ours_data();
    void other_programs_accept_ours();
    void ours_accepts_other_programs_data();
    void ours_accepts_other_programs();
};

void TestChecksumFiles::reading_rules_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<Digests>("expected");
    const QByteArray a = digest_a + "  ";
    const QByteArray b = digest_b + "  ";
    const auto row = [](const char* title, const QByteArray& content,
                        const QList<std::pair<QString, QByteArray>>& entries) {
        Digests digests;
        for (const auto& [name, digest] : entries) {
            digests.insert(name, QString::fromLatin1(digest));
        }
        QTest::newRow(title) << content << digests;
    };
    row("our own", header + a + "x\n" + b + "y\n", {{u"x"_s, digest_a}, {u"y"_s, digest_b}});
    row("CR LF", a + "x\r\n\r\n" + b + "y\r\n", {{u"x"_s, digest_a}, {u"y"_s, digest_b}});
    row("CR alone parts nothing", a + "x\r" + b + "y\n",
        {{u"x\r"_s + QString::fromLatin1(b) + u"y"_s, digest_a}});
    row("no final newline", a + "x", {{u"x"_s, digest_a}});
    row("asterisk", digest_a + " *x\n" + digest_b + " **y\n",
        {{u"x"_s, digest_a}, {u"*y"_s, digest_b}});
    row("blanks around and within", digest_a + "\t x  y \t\n", {{u"x  y"_s, digest_a}});
    row("upper case is kept", digest_a.toUpper() + "  x\n", {{u"x"_s, digest_a.toUpper()}});
    row("64 digits", digest_a + digest_b + "  x\n", {{u"x"_s, digest_a + digest_b}});
    row("31 digits", digest_a.chopped(1) + "  x\n", {});
    row("no hexadecimal digit", digest_a.chopped(1) + "g  x\n", {});
    row("digits of another script", QString(32, QChar(0x0661)).toUtf8() + "  x\n", {});
    row("leading blank", ' ' + a + "x\n", {});
    row("comments only", header, {});
    row("empty", "", {});
    row("name twice", a + "x\n" + b + "x\n", {{u"x"_s, digest_b}});
    row("name with a directory", a + "sub/x\n", {{u"sub/x"_s, digest_a}});
    row("digest alone", digest_a + "\n", {{QString(), digest_a}});
    row("UTF-8 with mark", "\xEF\xBB\xBF" + a + "\xC3\xA9\n", {{u"é"_s, digest_a}});
    row("UTF-16",
        QStringEncoder(QStringConverter::Utf16LE,
                       QStringConverter::Flag::WriteBom)(QString::fromLatin1(a) + u"é\r\n"_s),
        {{u"é"_s, digest_a}});
    row("NUL", '\0' + a + "x\n" + a + QByteArray("y\0z", 3) + '\n', {{u"y\0z"_s, digest_a}});
    QByteArray junk(0x400000, Qt::Uninitialized);
    QRandomGenerator(42).fillRange(reinterpret_cast<quint32*>(junk.data()), junk.size() / 4);
    row("junk", junk, {});
    const QByteArray long_name(4096, 'n');
    row("longest path", a + long_name + '\n', {{QString::fromLatin1(long_name), digest_a}});
}

void TestChecksumFiles::reading_rules()
{
    QFETCH(QByteArray, content);
    QFETCH(Digests, expected);
    TestDir dir;
    Digests full;
    for (const auto& [name, digest] : expected.asKeyValueRange()) {
        full.insert(dir.at() + u'/' + name, digest);
    }
    QBuffer buffer(&content);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QCOMPARE(engine::read_checksum_file(buffer, dir.path()), full);
}

namespace {

/// A head, a hundred million bytes of one kind, a tail.
class EndlessLine : public QIODevice
{
  public:
    EndlessLine(QByteArray head, char filler, QByteArray tail)
        : head_(std::move(head)), tail_(std::move(tail)), filler_(filler)
    {
        open(QIODevice::ReadOnly);
    }
    bool isSequential() const override { return true; }

  protected:
    qint64 readData(char* data, qint64 size) override
    {
        qint64 done = 0;
        for (; done < size && position_ < head_.size() + filling_ + tail_.size(); ++done) {
            data[done] = at(position_++);
        }
        return done > 0 ? done : -1;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

  private:
    char at(qint64 i) const
    {
        if (i < head_.size()) {
            return head_[i];
        }
        return i < head_.size() + filling_ ? filler_ : tail_[i - head_.size() - filling_];
    }

    static constexpr qint64 filling_ = 100'000'000;
    QByteArray head_;
    QByteArray tail_;
    char filler_;
    qint64 position_ = 0;
};

/// The most memory that this process ever had, in KiB; 0 where the system does not tell.
qint64 memory_peak()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:")) {
            return line.mid(6).chopped(2).trimmed().toLongLong();
        }
    }
    return 0;
}

#ifdef __SANITIZE_ADDRESS__
constexpr bool freed_memory_is_kept = true;
#else
constexpr bool freed_memory_is_kept = false;
#endif

} // namespace

void TestChecksumFiles::endless_lines_cost_no_memory_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<char>("filler");
    QTest::newRow("digest without end") << QByteArray() << 'a';
    QTest::newRow("name without end") << digest_a + "  " << 'n';
    QTest::newRow("nothing but NUL") << QByteArray() << '\0';
}

void TestChecksumFiles::endless_lines_cost_no_memory()
{
    QFETCH(QByteArray, head);
    QFETCH(char, filler);
    EndlessLine device(head, filler, '\n' + digest_b + "  after\n");
    const qint64 before = memory_peak();
    const QString root = QDir::rootPath();
    const Digests digests = engine::read_checksum_file(device, root);
    QCOMPARE(digests, (Digests{{root + u"after"_s, QString::fromLatin1(digest_b)}}));
    if (!freed_memory_is_kept) {
        QCOMPARE_LT(memory_peak() - before, 30'000);
    }
}

void TestChecksumFiles::a_million_lines_are_read()
{
    QByteArray content;
    constexpr int count = 1'000'000;
    for (int i = 0; i < count; ++i) {
        content += digest_a + "  file " + QByteArray::number(i) + '\n';
    }
    QBuffer buffer(&content);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    const QString root = QDir::rootPath();
    const Digests digests = engine::read_checksum_file(buffer, root);
    QCOMPARE(digests.size(), count);
    QVERIFY(digests.contains(root + u"file 0"_s) && digests.contains(root + u"file 999999"_s));
}

void TestChecksumFiles::written_whole_or_not_at_all_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("replace");
    QTest::addColumn<bool>("written");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("new") << u"new"_s << false << true << u"é\n"_s.toLocal8Bit();
    QTest::newRow("existing, kept") << u"old"_s << false << false << QByteArray("old");
    QTest::newRow("existing, replaced") << u"old"_s << true << true << u"é\n"_s.toLocal8Bit();
    QTest::newRow("directory") << u"dir"_s << true << false << QByteArray();
    QTest::newRow("in no directory") << u"gone/new"_s << true << false << QByteArray();
    QTest::newRow("in a read-only directory") << u"locked/new"_s << true << false << QByteArray();
}

void TestChecksumFiles::written_whole_or_not_at_all()
{
    QFETCH(QString, target);
    QFETCH(bool, replace);
    QFETCH(QByteArray, content);
    TestDir dir;
    dir.createFile(u"old"_s, "old");
    dir.createDir(u"dir"_s);
    if (permissions_hold()) {
        QFile::setPermissions(dir.createDir(u"locked"_s), QFile::ReadOwner | QFile::ExeOwner);
    } else if (!QFile::link(u"/proc"_s, dir.filePath(u"locked"_s))) {
        QSKIP("nothing is read-only to this user");
    }
    QTEST(engine::write_checksum_file(dir.filePath(target), u"é\n"_s,
                                      replace ? Replace::Yes : Replace::No),
          "written");
    QCOMPARE(dir.read(target), content);
    QStringList expected{u"dir"_s, u"locked"_s, u"old"_s};
    if (target == "new"_L1) {
        expected.insert(2, target);
    }
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
             expected);
}

void TestChecksumFiles::full_disk_leaves_the_older_file()
{
    // The disk is full to a second process only, by a limit on the size of its files.
    const char variable[] = "TAVREL_TEST_FULL_DISK";
    const QString small(12'000, u's');
    const QString large(200'000, u'l');
    if (qEnvironmentVariableIsSet(variable)) {
        const QDir limited(qEnvironmentVariable(variable));
        QVERIFY(engine::write_checksum_file(limited.filePath(u"fits"_s), u"fits"_s, Replace::Yes));
        for (const QString& text : {small, large}) {
            QVERIFY(!engine::write_checksum_file(limited.filePath(u"old"_s), text, Replace::Yes));
            QVERIFY(!engine::write_checksum_file(limited.filePath(u"new"_s), text, Replace::No));
        }
        return;
    }
    const QString shell = QStandardPaths::findExecutable(u"sh"_s);
    if (shell.isEmpty()) {
        QSKIP("no shell that limits the size of files");
    }
    TestDir dir;
    dir.createFile(u"old"_s, "old");
    QProcess limited;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(variable), dir.path());
    limited.setProcessEnvironment(environment);
    limited.start(shell, {u"-c"_s, u"trap '' XFSZ; ulimit -f 8 && exec \"$0\" \"$1\""_s,
                          QCoreApplication::applicationFilePath(),
                          QString::fromLatin1(QTest::currentTestFunction())});
    QVERIFY(limited.waitForFinished(60000));
    QVERIFY2(limited.exitCode() == 0, limited.readAllStandardOutput().constData());
    QCOMPARE(dir.read(u"fits"_s), "fits");
    QCOMPARE(dir.read(u"old"_s), "old");
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
             (QStringList{u"fits"_s, u"old"_s}));
}

void TestChecksumFiles::file_writer()
{
    QFETCH(QCryptographicHash::Algorithm, algorithm);
    Bench bench(algorithm);
    bench.create(u"a.txt"_s, "a");
    bench.create(u"B.txt"_s, "b");
    bench.create(u"kept.txt"_s, "kept");
    bench.create(u"other.txt"_s, "other");
    bench.create(u"kept.txt"_s + bench.suffix, "old");
    bench.first->upper = true;
    bench.open();
    QVERIFY(bench.write_files({u"kept.txt"_s, u"a.txt"_s, u"B.txt"_s}));

    const QString kept = u"kept.txt"_s + bench.suffix;
    QCOMPARE(bench.read(u"a.txt"_s + bench.suffix), header + bench.line(u"a.txt"_s, "a"));
    QCOMPARE(bench.read(u"B.txt"_s + bench.suffix), header + bench.line(u"B.txt"_s, "b"));
    QCOMPARE(bench.read(kept), "old");
    QCOMPARE(bench.names().size(), 7);
    QCOMPARE(bench.left_at(), (QStringList{kept, kept}));
    QCOMPARE(bench.boxes.take(), QStringList());
    QVERIFY(bench.plain_job_stays_plain(u"a.txt"_s));
    QCOMPARE(checksum_at(*bench.first, u"a.txt"_s), reference_digest("a", algorithm).toUpper());
}

void TestChecksumFiles::directory_writer()
{
    QFETCH(QCryptographicHash::Algorithm, algorithm);
    Bench bench(algorithm);
    bench.create(u"a.txt"_s, "a");
    bench.create(u"B.txt"_s, "b");
    bench.create(u"é (1).tar.gz"_s, "e");
    bench.create(u".hidden"_s, "h");
    bench.create(u"sub/inner.txt"_s, "i");
    bench.create(u"x.md5"_s, "x");
    bench.create(u"x.SHA1"_s, "x");
    bench.create(u"left.out"_s, "l");
    const QString name = u"Photos"_s + bench.suffix;
    bench.create(name, QByteArray(100'000, 'o'));
    bench.first->upper = true;
    bench.first->set_exclus(u"*.out"_s);
    bench.open();
    const QStringList before = bench.names();
    const QByteArray expected = header + bench.line(u"B.txt"_s, "b") + bench.line(u"a.txt"_s, "a") +
                                bench.line(u"é (1).tar.gz"_s, "e");
    for (int times = 0; times < 2; ++times) {
        QVERIFY(bench.write_directory_file());
        QCOMPARE(bench.read(name), expected);
        QCOMPARE(bench.left_at(), (QStringList{name, name}));
        QCOMPARE(bench.first->exclusions, QStringList{u"out"_s});
    }
    QCOMPARE(bench.names(), before);
    QVERIFY(bench.plain_job_stays_plain(u"a.txt"_s));
}

void TestChecksumFiles::writers_leave_out_what_has_no_digest()
{
    Bench bench;
    bench.create(u"a.txt"_s, "a");
    if (make_unreadable(bench.dir, u"Photos/secret"_s).isEmpty()) {
        QSKIP("everything is readable here");
    }
    bench.open();
    QVERIFY(bench.write_files({u"a.txt"_s, u"secret"_s}));
    QVERIFY(bench.write_directory_file());
    QCOMPARE(bench.names(),
             (QStringList{u"Photos.md5"_s, u"a.txt"_s, u"a.txt.md5"_s, u"secret"_s}));
    QCOMPARE(bench.read(u"Photos.md5"_s), header + bench.line(u"a.txt"_s, "a"));
    QCOMPARE(bench.boxes.take(), QStringList());
}

void TestChecksumFiles::file_writer_goes_into_selected_directories()
{
    Bench bench;
    bench.create(u"a.txt"_s, "a");
    bench.create(u"sub/inner.txt"_s, "i");
    bench.open();
    QVERIFY(bench.write_files({u"sub"_s}));
    QVERIFY(bench.read(u"sub/inner.txt.md5"_s).isNull());
    QVERIFY(bench.write_files({u"sub"_s, u"a.txt"_s}));
    QCOMPARE(bench.read(u"sub/inner.txt.md5"_s), header + bench.line(u"inner.txt"_s, "i"));
    QCOMPARE(bench.read(u"a.txt.md5"_s), header + bench.line(u"a.txt"_s, "a"));
}

void TestChecksumFiles::file_writer_reports_and_goes_on()
{
    Bench bench;
    // A name that leaves no room for a suffix.
    const QString longest(253, u'n');
    bench.create(u"a.txt"_s, "a");
    bench.create(longest, "n");
    bench.create(u"z.txt"_s, "z");
    bench.open();
    QVERIFY(bench.write_files({u"z.txt"_s, longest, u"a.txt"_s}));
    QCOMPARE(bench.boxes.take(),
             (QStringList{u"Impossible de créer le fichier"_s,
                          u"Impossible de créer le fichier %1.md5"_s.arg(longest)}));
    QCOMPARE(bench.names(),
             (QStringList{u"a.txt"_s, u"a.txt.md5"_s, longest, u"z.txt"_s, u"z.txt.md5"_s}));
    QCOMPARE(bench.left_at(), (QStringList{u"z.txt.md5"_s, u"z.txt.md5"_s}));
    QVERIFY(bench.plain_job_stays_plain(u"a.txt"_s));
}

void TestChecksumFiles::failed_directory_writer_leaves_its_traces()
{
    Bench bench;
    bench.create(u"a.txt"_s, "a");
    bench.dir.createDir(u"Photos/Photos.md5"_s);
    bench.open();
    QVERIFY(bench.write_directory_file());
    QCOMPARE(bench.boxes.take(), (QStringList{u"Impossible de créer le fichier"_s,
                                              u"Impossible de créer le fichier Photos.md5"_s}));
    QCOMPARE(bench.first->exclusions, pair);
    QCOMPARE(bench.names(), QStringList{u"a.txt"_s});
    QVERIFY(!bench.left_at().contains(u"Photos.md5"_s));

    // Nothing of the failed run is written later, wherever the pane is by then.
    QVERIFY(QDir().rmdir(bench.path(u"Photos.md5"_s)));
    QVERIFY(bench.plain_job_stays_plain(u"a.txt"_s));
    QVERIFY(bench.write_files({u"a.txt"_s}));
    QCOMPARE(bench.names(), (QStringList{u"a.txt"_s, u"a.txt.md5"_s}));

    QVERIFY(bench.write_directory_file());
    QCOMPARE(bench.boxes.take(), QStringList());
    QCOMPARE(bench.read(u"Photos.md5"_s), header + bench.line(u"a.txt"_s, "a"));
    QCOMPARE(bench.left_at(), (QStringList{u"Photos.md5"_s, u"Photos.md5"_s}));
    // The successful run took back its own pair only.
    QCOMPARE(bench.first->exclusions, pair);
    QVERIFY(bench.plain_job_stays_plain(u"a.txt"_s));
}

void TestChecksumFiles::empty_directory_gets_no_file()
{
    Bench bench;
    bench.dir.createDir(u"Photos/sub"_s);
    bench.open();
    QVERIFY(bench.write_directory_file());
    QCOMPARE(bench.names(), QStringList());
    QCOMPARE(bench.boxes.take(), QStringList());
    QCOMPARE(bench.first->exclusions, pair);
}

void TestChecksumFiles::stopped_writer_writes_what_it_has()
{
    Bench bench;
    bench.create(u"a.txt"_s, "a");
    if (!bench.create_endless(u"huge"_s)) {
        QSKIP("no sparse files of 1 TiB here");
    }
    bench.open();
    bench.start_directory_file();
    QTRY_VERIFY(!checksum_at(*bench.first, u"a.txt"_s).isEmpty());
    QVERIFY(!bench.radio(u"SHA1"_s)->isEnabled());
    bench.first->stop_button->click();
    QVERIFY(bench.wait_idle());
    QCOMPARE(bench.read(u"Photos.md5"_s), header + bench.line(u"a.txt"_s, "a"));
    QCOMPARE(bench.first->exclusions, QStringList());
    QVERIFY(bench.radio(u"SHA1"_s)->isEnabled());

    select_names(*bench.first, {u"a.txt"_s, u"huge"_s});
    bench.first->act_md5_file->trigger();
    QTRY_VERIFY(!checksum_at(*bench.first, u"a.txt"_s).isEmpty());
    bench.first->stop_button->click();
    QVERIFY(bench.wait_idle());
    QCOMPARE(bench.names(), (QStringList{u"Photos.md5"_s, u"a.txt"_s, u"a.txt.md5"_s, u"huge"_s}));
    QVERIFY(bench.plain_job_stays_plain(u"a.txt"_s));
}

void TestChecksumFiles::request_during_a_job_arms_anew()
{
    Bench bench;
    bench.create(u"a.txt"_s, "a");
    if (!bench.create_endless(u"huge"_s)) {
        QSKIP("no sparse files of 1 TiB here");
    }
    bench.open();
    select_names(*bench.first, {u"a.txt"_s, u"huge"_s});
    bench.first->act_md5_file->trigger();
    QTRY_VERIFY(!checksum_at(*bench.first, u"a.txt"_s).isEmpty());
    // Forgets the digest of the first request and starts no job of its own.
    bench.first->act_md5_file->trigger();
    bench.first->stop_button->click();
    QVERIFY(bench.wait_idle());
    QCOMPARE(bench.names(), (QStringList{u"a.txt"_s, u"huge"_s}));
    QVERIFY(bench.plain_job_stays_plain(u"a.txt"_s));
}

void TestChecksumFiles::verifier_finds_no_error()
{
    QFETCH(QCryptographicHash::Algorithm, algorithm);
    Bench bench(algorithm);
    bench.create(u"a.txt"_s, "a");
    bench.create(u"empty"_s, "");
    bench.create(u"not listed"_s, "n");
    const QString name = u"list"_s + bench.suffix.toUpper();
    bench.create(name, header + bench.line(u"a.txt"_s, "a") + bench.line(u"empty"_s, ""));
    bench.first->upper = true;
    bench.open();
    // The algorithm comes from the suffix, whatever was chosen, and is locked for the run.
    bench.radio(bench.md5() ? u"SHA1"_s : u"MD5"_s)->setChecked(true);
    select_names(*bench.first, {name});
    bench.activate(name);
    const QString chosen = bench.md5() ? u"MD5"_s : u"SHA1"_s;
    QVERIFY(bench.radio(chosen)->isChecked());
    QVERIFY(!bench.radio(u"MD5"_s)->isEnabled() && !bench.radio(u"SHA1"_s)->isEnabled());
    QCOMPARE(bench.second->headerItem()->text(ColHash), chosen);
    QVERIFY(bench.wait_idle());

    QCOMPARE(bench.boxes.take(), (QStringList{ok_title, ok_text}));
    QVERIFY(bench.boxes.last_has_picture);
    // Of the two listed files; the checksum file is no longer selected.
    QVERIFY(bench.first->status_label->text().startsWith(u"Fini. 2 fichiers traités en "_s));
    QVERIFY(bench.radio(u"MD5"_s)->isEnabled() && bench.radio(u"SHA1"_s)->isEnabled());
    QCOMPARE(bench.left_at(), (QStringList{name, name}));
    QCOMPARE(bench.first->exclusions, QStringList());
    QVERIFY(bench.plain_job_stays_plain(u"a.txt"_s));
}

void TestChecksumFiles::verifier_reports_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("errors"); // less the directory
    const QByteArray good = reference_digest("a").toLatin1();
    const auto different = [](const QString& name) { return u"Différent => "_s + name; };
    const auto missing = [](const QString& name) { return u"Manquant  => "_s + name; };
    QTest::newRow("changed") << digest_a + "  a.txt\n" << QStringList{different(u"a.txt"_s)};
    QTest::newRow("capitals") << good.toUpper() + "  a.txt\n" << QStringList{different(u"a.txt"_s)};
    QTest::newRow("64 digits") << good + digest_a + "  a.txt\n"
                               << QStringList{different(u"a.txt"_s)};
    QTest::newRow("missing") << good + "  gone\n" << QStringList{missing(u"gone"_s)};
    QTest::newRow("other case") << good + "  A.TXT\n" << QStringList{missing(u"A.TXT"_s)};
    QTest::newRow("below") << good + "  sub/in\n" << QStringList{missing(u"sub/in"_s)};
    QTest::newRow("beside") << good + "  ../a.txt\n" << QStringList{missing(u"../a.txt"_s)};
    QTest::newRow("itself") << good + "  list.md5\n" << QStringList{missing(u"list.md5"_s)};
    QTest::newRow("no name") << good + "\n" << QStringList{missing(QString())};
    QTest::newRow("markup") << good + "  <b>&\n" << QStringList{missing(u"&lt;b&gt;&amp;"_s)};
    QTest::newRow("in the order of paths")
        << good + "  z\n" + good + "  a.txt\n" + digest_a + "  b.txt\n" + good + "  B\n"
        << QStringList{missing(u"B"_s), different(u"b.txt"_s), missing(u"z"_s)};
}

void TestChecksumFiles::verifier_reports()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, errors);
    Bench bench;
    bench.create(u"a.txt"_s, "a");
    bench.create(u"b.txt"_s, "b");
    bench.create(u"sub/in"_s, "a");
    bench.create(u"list.md5"_s, content);
    bench.open();
    QVERIFY(bench.verify(u"list.md5"_s));
    errors.replaceInStrings(u"=> "_s, u"=> "_s + bench.path().toHtmlEscaped() + u'/');
    QCOMPARE(bench.boxes.take(), (QStringList{u"Ko"_s, report(errors)}));
    QCOMPARE(bench.left_at(), (QStringList{u"list.md5"_s, u"list.md5"_s}));
    QVERIFY(bench.plain_job_stays_plain(u"a.txt"_s));
}

void TestChecksumFiles::verifier_refuses_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("is_dir");
    QTest::addColumn<QString>("algorithm");
    QTest::addColumn<QStringList>("box"); // %1 is the directory
    const QString title = u"Impossible d'ouvrir le fichier"_s;
    const QStringList nothing{u"Rien"_s, u"<strong><u>Rien à vérifier !<u/></strong><br />"_s};
    QTest::newRow("directory") << u"x.y.md5"_s << true << u"MD5"_s
                               << QStringList{title, title + u" %1/x.y..md5"_s};
    QTest::newRow("directory, longer suffix")
        << u"x.md5sum"_s << true << u"SHA1"_s << QStringList{title, title + u" %1/x..sha1"_s};
    QTest::newRow("comments") << u"x.md5"_s << false << u"MD5"_s << nothing;
    QTest::newRow("comments, longer suffix") << u"x.md5sum"_s << false << u"SHA1"_s << nothing;
}

void TestChecksumFiles::verifier_refuses()
{
    QFETCH(QString, name);
    QFETCH(bool, is_dir);
    QFETCH(QString, algorithm);
    QFETCH(QStringList, box);
    Bench bench;
    bench.create(u"a.txt"_s, "a");
    is_dir ? (void)bench.dir.createDir(u"Photos/"_s + name) : bench.create(name, header);
    bench.open();
    select_names(*bench.first, {u"a.txt"_s, name});
    bench.activate(name);
    QVERIFY(!bench.first->job_running());
    box.replaceInStrings(u"%1"_s, bench.path());
    QCOMPARE(bench.boxes.take(), box);
    QVERIFY(bench.radio(algorithm)->isChecked());
    // No job will end and unlock the choice.
    QVERIFY(bench.radio(algorithm)->isEnabled());
    QCOMPARE(bench.first->exclusions, pair);
    QVERIFY(bench.plain_job_stays_plain(u"a.txt"_s));
}

void TestChecksumFiles::verifier_hashes_whatever_its_type()
{
    Bench bench;
    bench.create(u"a.txt"_s, "a");
    bench.create(u"inner.sha1"_s, "i");
    bench.create(u"list.md5"_s, bench.line(u"a.txt"_s, "a") + bench.line(u"inner.sha1"_s, "i"));
    bench.first->set_exclus(u"txt"_s);
    bench.open();
    QVERIFY(bench.verify(u"list.md5"_s));
    QCOMPARE(bench.boxes.take(), (QStringList{ok_title, ok_text}));
    QCOMPARE(bench.first->exclusions, QStringList{u"txt"_s});
}

void TestChecksumFiles::verifier_loses_its_file()
{
    Bench bench;
    bench.create(u"a.txt"_s, "a");
    bench.create(u"list.md5"_s, bench.line(u"a.txt"_s, "a"));
    bench.open();
    bench.activate(u"list.md5"_s);
    // The job's end cannot arrive before the event loop turns.
    QVERIFY(QFile::remove(bench.path(u"list.md5"_s)));
    QVERIFY(bench.wait_idle());
    QCOMPARE(bench.boxes.take(),
             (QStringList{u"Impossible d'ouvrir le fichier"_s,
                          u"Impossible d'ouvrir le fichier "_s + bench.path(u"list.md5"_s)}));
    QCOMPARE(bench.first->exclusions, pair);
    QVERIFY(bench.plain_job_stays_plain(u"a.txt"_s));
}

void TestChecksumFiles::stopped_verifier_reports_what_is_missing()
{
    Bench bench;
    bench.create(u"a.txt"_s, "a");
    bench.create(u"list.md5"_s, bench.line(u"a.txt"_s, "a") + digest_a + "  huge\n");
    if (!bench.create_endless(u"huge"_s)) {
        QSKIP("no sparse files of 1 TiB here");
    }
    bench.open();
    bench.activate(u"list.md5"_s);
    QTRY_VERIFY(!checksum_at(*bench.first, u"a.txt"_s).isEmpty());
    bench.first->stop_button->click();
    QVERIFY(bench.wait_idle());
    QCOMPARE(bench.boxes.take(),
             (QStringList{u"Ko"_s, report({u"Manquant  => "_s + bench.path(u"huge"_s)})}));
    QCOMPARE(bench.first->exclusions, QStringList());
}

void TestChecksumFiles::long_report_stays_on_the_screen()
{
    Bench bench;
    QByteArray list;
    QStringList errors;
    for (int i = 10'000; i < 12'000; ++i) {
        const QString name = u"a file that is gone "_s + QString::number(i);
        list += digest_a + "  " + name.toUtf8() + '\n';
        errors.append(u"Manquant  => "_s + bench.path(name));
    }
    bench.create(u"list.md5"_s, list);
    bench.open();
    QVERIFY(bench.verify(u"list.md5"_s));
    // So many lines have a view of their own.
    QCOMPARE(bench.boxes.take(), (QStringList{u"Ko"_s, report({})}));
    QCOMPARE(bench.boxes.last_lines, errors);
    QVERIFY(bench.boxes.last_fits_the_screen);
}

namespace {

const QStringList awkward_names = {u"with blanks.txt"_s,      u"accentué à Noël.txt"_s,
                                   u"brackets (1) [2].txt"_s, u"-dash"_s,
                                   u"many.dots.tar.gz"_s,     u"日本.txt"_s};

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

void TestChecksumFiles::other_programs_accept_ours_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QCryptographicHash::Algorithm>("algorithm");
    QTest::newRow("md5sum") << u"md5sum"_s << QCryptographicHash::Md5;
    QTest::newRow("sha1sum") << u"sha1sum"_s << QCryptographicHash::Sha1;
    QTest::newRow("rhash, MD5") << u"rhash"_s << QCryptographicHash::Md5;
    QTest::newRow("rhash, SHA1") << u"rhash"_s << QCryptographicHash::Sha1;
}

void TestChecksumFiles::other_programs_accept_ours()
{
    QFETCH(QString, program);
    QFETCH(QCryptographicHash::Algorithm, algorithm);
    if (QStandardPaths::findExecutable(program).isEmpty()) {
        QSKIP("the program is not installed");
    }
    Bench bench(algorithm);
    for (const QString& name : awkward_names) {
        bench.create(name, name.toUtf8());
    }
    bench.open();
    QVERIFY(bench.write_directory_file());
    QVERIFY(bench.write_files(awkward_names));
    QStringList lists{u"Photos"_s + bench.suffix};
    for (const QString& name : awkward_names) {
        lists.append(name + bench.suffix);
    }
    for (const QString& list : lists) {
        const QByteArray told = run_program(program, {u"-c"_s, u"--"_s, list}, bench.path());
        const qsizetype files = list == lists.first() ? awkward_names.size() : 1;
        QCOMPARE(told.count("OK"), files + (program == "rhash"_L1 ? 1 : 0));
    }
    bench.create(u"-dash"_s, "changed");
    QVERIFY(run_program(program, {u"-c"_s, lists.first()}, bench.path()).isNull());
}

void TestChecksumFiles::ours_accepts_other_programs_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<QCryptographicHash::Algorithm>("algorithm");
    QTest::addColumn<QByteArray>("line_end");
    const QList<std::pair<QString, QCryptographicHash::Algorithm>> commands = {
        {u"md5sum"_s, QCryptographicHash::Md5},      {u"md5sum -b"_s, QCryptographicHash::Md5},
        {u"sha1sum"_s, QCryptographicHash::Sha1},    {u"sha1sum -b"_s, QCryptographicHash::Sha1},
        {u"rhash --md5"_s, QCryptographicHash::Md5}, {u"rhash --sha1"_s, QCryptographicHash::Sha1}};
    for (const auto& [command, algorithm] : commands) {
        for (const QByteArray line_end : {"\n", "\r\n"}) {
            QTest::addRow("%s, %s", qPrintable(command), line_end.size() == 1 ? "LF" : "CR LF")
                << command.split(u' ') << algorithm << line_end;
        }
    }
}

void TestChecksumFiles::ours_accepts_other_programs()
{
    QFETCH(QStringList, command);
    QFETCH(QCryptographicHash::Algorithm, algorithm);
    QFETCH(QByteArray, line_end);
    const QString program = command.takeFirst();
    if (QStandardPaths::findExecutable(program).isEmpty()) {
        QSKIP("the program is not installed");
    }
    Bench bench(algorithm);
    for (const QString& name : awkward_names) {
        bench.create(name, name.toUtf8());
    }
    const QByteArray list =
        run_program(program, command + QStringList{u"--"_s} + awkward_names, bench.path());
    QCOMPARE(list.count('\n'), awkward_names.size());
    bench.create(u"list"_s + bench.suffix, QByteArray(list).replace("\n", line_end));
    bench.open();
    QVERIFY(bench.verify(u"list"_s + bench.suffix));
    QCOMPARE(bench.boxes.take(), (QStringList{ok_title, ok_text}));

    bench.create(u"-dash"_s, "changed");
    QVERIFY(bench.verify(u"list"_s + bench.suffix));
    QCOMPARE(bench.boxes.take(),
             (QStringList{u"Ko"_s, report({u"Différent => "_s + bench.path(u"-dash"_s)})}));
}

QTEST_MAIN(TestChecksumFiles)
#include "test_checksum_files.moc"
