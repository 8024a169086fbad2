// The verify dialog on the real window: the pane's three slots, the dialog between them and what
// stays behind when it goes.

#include "dialogs/fencheck.h"
#include "tests/modal_driver.h"
#include "tests/pane_fixture.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

using namespace Qt::StringLiterals;

namespace {

const QByteArray content = "the content";

const QString md5 = reference_digest(content);
const QString sha1 = reference_digest(content, QCryptographicHash::Sha1);

/// What the user sees of the dialog.
struct View
{
    explicit View(const FenCheck& dialog)
        : entry(dialog.findChild<QLineEdit*>()), progress(dialog.findChild<QProgressBar*>()),
          result(dialog.findChildren<QLabel*>().at(1)),
          check(dialog.findChildren<QPushButton*>().at(0)),
          cancel(dialog.findChildren<QPushButton*>().at(1))
    {}

    void enter(const QString& digest) const
    {
        entry->clear();
        QTest::keyClicks(entry, digest);
        QTest::mouseClick(check, Qt::LeftButton);
    }

    /// "green", "red" or "" as long as there is no verdict.
    QString verdict() const
    {
        if (!result->isVisible() || result->styleSheet() != entry->styleSheet()) {
            return {};
        }
        return result->styleSheet().contains("green"_L1) ? u"green"_s : u"red"_s;
    }

    QLineEdit* entry;
    QProgressBar* progress;
    QLabel* result;
    QPushButton* check;
    QPushButton* cancel;
};

/// A window whose first pane shows "small.txt", a file that takes long to hash, and a directory.
class VerifyFixture : public WindowFixture
{
  public:
    VerifyFixture()
    {
        working_dir.createFile(u"files/small.txt"_s, content);
        working_dir.createDir(u"files/sub"_s);
        working_dir.createDir(u"empty"_s);
        if (working_dir.createHuge(u"files/huge.bin"_s).isEmpty()) {
            qFatal("cannot make a huge file");
        }
        first->changeModel(working_dir.at(u"files"_s));
        second->changeModel(working_dir.at(u"empty"_s));
        window->show();
    }

    ~VerifyFixture() { first->stop_thread(); }

    /// Opens the dialog on a row and uses it; answers whether it came up.
    bool verify(const QString& name, const std::function<void(View&)>& use)
    {
        first->setCurrentItem(name.isEmpty() ? nullptr : find_row(*first, name));
        const ModalDriver<FenCheck> driver([&](FenCheck& dialog) {
            View view(dialog);
            use(view);
        });
        first->act_check->trigger();
        return driver.met();
    }

    /// Enters a digest, waits for the verdict and answers it with the text shown, as "green:...".
    QString verdict_for(const QString& name, const QString& digest)
    {
        QString seen;
        verify(name, [&](View& view) {
            view.enter(digest);
            if (QTest::qWaitFor([&] { return !view.verdict().isEmpty(); }, 30000)) {
                seen = view.verdict() + u':' + view.result->text();
            }
        });
        return seen;
    }

    /// Starts to hash the huge file and closes the dialog meanwhile.
    void abandon_hashing()
    {
        verify(u"huge.bin"_s, [](View& view) {
            view.enter(md5);
            QTRY_VERIFY(view.progress->isVisible());
            QTest::mouseClick(view.cancel, Qt::LeftButton);
        });
    }
};

} // namespace

class TestVerify : public QObject
{
    Q_OBJECT

  private slots:
    void verdicts_data();
    void verdicts();
    void unreadable_file();
    void algorithm_is_carried_over();
    void controls_follow_the_hashing();
    void progress_bars_take_turns();
    void closing_while_hashing();
    void stop_flag_outlives_the_dialog();
    void running_job_blocks_the_check();
    void rows_without_file_open_nothing();
};

void TestVerify::verdicts_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("upper");
    QTest::addColumn<QString>("seen");

    const QString wrong = QString(md5).replace(31, 1, md5.endsWith(u'0') ? u"1"_s : u"0"_s);
    QTest::newRow("md5") << md5 << false << u"green:"_s + md5;
    QTest::newRow("sha1") << sha1 << false << u"green:"_s + sha1;
    QTest::newRow("upper-case option") << sha1 << true << u"green:"_s + sha1.toUpper();
    QTest::newRow("last digit wrong") << wrong << false << u"red:"_s + md5;
    QTest::newRow("md5 where sha1 is given") << md5 + u"00000000"_s << false << u"red:"_s + sha1;
}

void TestVerify::verdicts()
{
    QFETCH(QString, entry);
    QFETCH(bool, upper);
    QFETCH(QString, seen);

    VerifyFixture fixture;
    fixture.first->setopt(false, false, false, false, false, upper);
    QCOMPARE(fixture.verdict_for(u"small.txt"_s, entry), seen);
    QCOMPARE(checksum_at(*fixture.first, u"small.txt"_s), seen.section(u':', 1));
    QCOMPARE(mark_at(*fixture.first, u"small.txt"_s), QString());
    QVERIFY(!fixture.first->stop_flagged());
}

void TestVerify::unreadable_file()
{
    VerifyFixture fixture;
    if (make_unreadable(fixture.working_dir, u"files/secret"_s).isEmpty()) {
        QSKIP("every file is readable here");
    }
    fixture.first->Reset();
    const QString path = find_row(*fixture.first, u"secret"_s)->text(ColPath);
    const QSignalSpy progress(fixture.first, &MyTreeWidget::prog_bar);
    QCOMPARE(fixture.verdict_for(u"secret"_s, md5),
             u"red:Impossible d'ouvrir le fichier "_s + path);
    QVERIFY(progress.isEmpty());
}

void TestVerify::algorithm_is_carried_over()
{
    VerifyFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    QCOMPARE(fixture.verdict_for(u"small.txt"_s, sha1), u"green:"_s + sha1);
    QCOMPARE(pane.headerItem()->text(ColHash), u"MD5"_s);
    QCOMPARE(fixture.second->algorithm(), QCryptographicHash::Md5);

    for (const QString& digest : {sha1, md5}) {
        pane.Reset();
        select_names(pane, {u"small.txt"_s});
        pane.HashThis();
        QVERIFY(fixture.wait_idle());
        QCOMPARE(checksum_at(pane, u"small.txt"_s), digest);
        fixture.radio(u"SHA1"_s)->setChecked(true);
        fixture.radio(u"MD5"_s)->setChecked(true);
    }
}

void TestVerify::controls_follow_the_hashing()
{
    VerifyFixture fixture;
    const QAction* compare = fixture.action(u"Comparer"_s);
    fixture.verify(u"huge.bin"_s, [&](View& view) {
        QVERIFY(compare->isEnabled());
        view.enter(md5);
        QTRY_VERIFY(!compare->isEnabled());
        QVERIFY(!fixture.radio(u"SHA1"_s)->isEnabled());
        QVERIFY(!view.check->isEnabled() && !view.entry->isEnabled());
    });
    QVERIFY(compare->isEnabled());
    QVERIFY(fixture.radio(u"SHA1"_s)->isEnabled());

    VerifyFixture quick;
    QSignalSpy changes(quick.action(u"Comparer Tout"_s), &QAction::enabledChanged);
    quick.verify(u"small.txt"_s, [&](View& view) {
        view.enter(md5);
        QTRY_COMPARE(view.verdict(), u"green"_s);
        QCOMPARE(changes, QList<QVariantList>({{false}, {true}}));
        QVERIFY(view.progress->isHidden());
        QVERIFY(!view.entry->isEnabled());
        QTest::mouseClick(view.check, Qt::LeftButton);
        QVERIFY(view.check->window()->isHidden());
    });
    quick.first->changeModel(quick.working_dir.at(u"empty"_s)); // without the huge file
    QVERIFY(quick.compare_all());
}

void TestVerify::progress_bars_take_turns()
{
    VerifyFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    fixture.verify(u"small.txt"_s, [&](View& view) {
        emit pane.prog_bar(40);
        QCOMPARE(view.progress->value(), 40);
        QVERIFY(pane.progress->value() < 40);
    });
    emit pane.prog_bar(60);
    QCOMPARE(pane.progress->value(), 60);
}

void TestVerify::closing_while_hashing()
{
    VerifyFixture fixture;
    QSignalSpy sent(fixture.first, &MyTreeWidget::checksum_hash_done_send);
    fixture.abandon_hashing();
    QVERIFY(!fixture.window->findChild<FenCheck*>());
    QVERIFY(fixture.first->stop_flagged());
    QVERIFY(fixture.action(u"Comparer"_s)->isEnabled());

    // The task ends by itself, long before the file does, and its end reaches nobody.
    QVERIFY(QThreadPool::globalInstance()->waitForDone(30000));
    QTest::qWait(50);
    QCOMPARE(checksum_at(*fixture.first, u"huge.bin"_s), QString());
    QCOMPARE(sent.count(), 0);
}

void TestVerify::stop_flag_outlives_the_dialog()
{
    VerifyFixture fixture;
    QCOMPARE(fixture.verdict_for(u"small.txt"_s, md5), u"green:"_s + md5);
    fixture.abandon_hashing();

    // Nothing is hashed before the next comparison has taken note: the rows' old texts are shown.
    QCOMPARE(fixture.verdict_for(u"small.txt"_s, sha1), u"red:"_s + md5);
    QCOMPARE(fixture.verdict_for(u"huge.bin"_s, md5), u"red:"_s);
    QVERIFY(fixture.first->stop_flagged());

    fixture.action(u"Comparer Tout"_s)->trigger();
    QVERIFY(fixture.wait_idle());
    QVERIFY(!fixture.first->stop_flagged());
    QCOMPARE(fixture.verdict_for(u"small.txt"_s, sha1), u"green:"_s + sha1);
}

void TestVerify::running_job_blocks_the_check()
{
    VerifyFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    select_names(pane, {u"huge.bin"_s});
    pane.HashThis();
    QTRY_VERIFY(pane.status_label->text().startsWith("En cours : "_L1));
    QSignalSpy sent(&pane, &MyTreeWidget::checksum_hash_done_send);
    QVERIFY(fixture.verify(u"small.txt"_s, [&](View& view) {
        view.enter(sha1);
        QCoreApplication::processEvents();
        QVERIFY(pane.job_running());
        QVERIFY(!view.check->isEnabled() && !view.entry->isEnabled() && view.cancel->isEnabled());
        QCOMPARE(view.verdict(), QString());
        QTest::mouseClick(view.cancel, Qt::LeftButton);
    }));
    QVERIFY(fixture.wait_idle());
    QCOMPARE(sent.count(), 0);
    QCOMPARE(pane.algorithm(), QCryptographicHash::Md5);
    QCOMPARE(checksum_at(pane, u"small.txt"_s), QString());
}

void TestVerify::rows_without_file_open_nothing()
{
    VerifyFixture fixture;
    for (const QString& name : {u"sub"_s, u".."_s, QString()}) {
        QVERIFY2(!fixture.verify(name, [](View&) {}), qPrintable(name));
    }
    QVERIFY(fixture.verify(u"small.txt"_s, [](View&) {}));
}

QTEST_MAIN(TestVerify)
#include "test_verify.moc"
