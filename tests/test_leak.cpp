// Memory over many comparisons in one process. Results dialogs live on as long as their window, so
// what one of them costs is told, and taken off.

#include "dialogs/fenres.h"
#include "tests/pane_fixture.h"

#include <QTest>

#include <malloc.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int comparisons = 200;
constexpr int settled_after = 10;
constexpr int files = 100;

// What a comparison may leave behind. Its rows alone would be far more.
constexpr qint64 tolerance_bytes = 16 * 1024;

qint64 bytes_in_use()
{
    return static_cast<qint64>(mallinfo2().uordblks) + static_cast<qint64>(mallinfo2().hblkhd);
}

/// What one results dialog over these panes keeps.
qint64 cost_of_results(WindowFixture& fixture)
{
    constexpr int dialogs = 20;
    QList<FenRes*> made;
    const qint64 before = bytes_in_use();
    for (int i = 0; i < dialogs; ++i) {
        made.append(new FenRes(fixture.window.get(), fixture.first, fixture.second));
        made.last()->open();
        QCoreApplication::processEvents(); // is painted
        made.last()->close();
        QCoreApplication::processEvents();
    }
    const qint64 cost = (bytes_in_use() - before) / dialogs;
    qDeleteAll(made);
    return cost;
}

} // namespace

class TestLeak : public QObject
{
    Q_OBJECT

  private slots:
    void memory_is_flat_over_comparisons();
};

void TestLeak::memory_is_flat_over_comparisons()
{
    if (bytes_in_use() == 0) {
        QSKIP("the allocator of this build tells nothing");
    }
    TestDir dir;
    for (int i = 0; i < files; ++i) {
        dir.createFile(u"a/%1"_s.arg(i), "x");
        dir.createFile(u"b/%1"_s.arg(i), i % 10 == 0 ? "y" : "x");
    }
    WindowFixture fixture;
    fixture.first->changeModel(dir.at(u"a"_s));
    fixture.second->changeModel(dir.at(u"b"_s));
    const auto dialogs = [&] { return fixture.window->findChildren<FenRes*>().size(); };

    qint64 settled = 0;
    qsizetype dialogs_then = 0;
    for (int i = 1; i <= comparisons; ++i) {
        QVERIFY(fixture.compare_all());
        for (FenRes* dialog : fixture.window->findChildren<FenRes*>()) {
            dialog->close();
        }
        QCoreApplication::processEvents();
        if (i == settled_after) {
            settled = bytes_in_use();
            dialogs_then = dialogs();
        }
    }
    QCOMPARE(dialogs(), comparisons / 2);
    const qint64 grown = bytes_in_use() - settled;
    const qint64 dialog_cost = cost_of_results(fixture);
    const qint64 rest = grown - dialog_cost * (dialogs() - dialogs_then);
    const qint64 per_run = rest / (comparisons - settled_after);
    qInfo(
        "after %d comparisons %lld bytes in use, after %d %lld more; a results dialog costs %lld, "
        "so a comparison leaves %lld",
        settled_after, static_cast<long long>(settled), comparisons, static_cast<long long>(grown),
        static_cast<long long>(dialog_cost), static_cast<long long>(per_run));
    QVERIFY(per_run < tolerance_bytes);
}

QTEST_MAIN(TestLeak)
#include "test_leak.moc"
