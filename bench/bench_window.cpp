#include "bench/bench_window.h"

#include "rows/pane_row.h"
#include "tree/mytreewidget.h"

#include <QApplication>
#include <QEventLoop>
#include <QMessageBox>
#include <QTimer>
#include <QTreeWidgetItemIterator>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace bench {

namespace {

/// An event loop with a clock. It runs from its construction to the first stop().
class Clock
{
  public:
    Clock()
    {
        // Work that never ends is a fault, which a measurement that hangs would not tell.
        QTimer::singleShot(10min, &loop_, [] { qFatal("the window has not finished its work"); });
        timer_.start();
    }

    void stop()
    {
        if (nanoseconds_ < 0) {
            nanoseconds_ = timer_.nsecsElapsed();
            loop_.quit();
        }
    }

    /// Waits for the stop and answers its time in seconds.
    double seconds()
    {
        if (nanoseconds_ < 0) {
            loop_.exec();
        }
        return static_cast<double>(nanoseconds_) / 1e9;
    }

    QObject* context() { return &loop_; }

  private:
    QEventLoop loop_;
    QElapsedTimer timer_;
    qint64 nanoseconds_ = -1;
};

template<class Holds>
int count_files(const MyTreeWidget& pane, Holds holds)
{
    int count = 0;
    for (QTreeWidgetItemIterator it(const_cast<MyTreeWidget*>(&pane)); *it; ++it) {
        if ((*it)->type() == TypeFile && holds(**it)) {
            ++count;
        }
    }
    return count;
}

/// Answers whether there was a message box.
bool close_message_box()
{
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box) {
        return false;
    }
    if (box->icon() == QMessageBox::Critical) {
        qFatal("the window reports: %s", qPrintable(box->text().left(200)));
    }
    box->reject();
    return true;
}

void expect(int found, int wanted, const char* what)
{
    if (found != wanted) {
        qFatal("%d files are %s, not %d", found, what, wanted);
    }
}

} // namespace

BenchWindow::BenchWindow()
{
    window_.show();
    settle();
}

void BenchWindow::open(const QString& first, const QString& second)
{
    window_.first_pane()->changeModel(first);
    if (!second.isEmpty()) {
        window_.second_pane()->changeModel(second);
    }
    settle();
}

double BenchWindow::hash_selection()
{
    return time_job(&MyTreeWidget::HashThis);
}

double BenchWindow::hash_all()
{
    return time_job(&MyTreeWidget::HashAll);
}

// Slots are called in the order in which they were connected. What the window itself does on a
// signal comes after the signal, and so it has to come after the clock.

double BenchWindow::time_job(void (MyTreeWidget::*job)())
{
    const auto finished = &QFutureWatcherBase::finished;
    QFutureWatcherBase* watcher = &first().job_watcher;
    Clock clock;
    QObject::disconnect(watcher, finished, &window_, &MainFen::compare);
    QObject::connect(watcher, finished, clock.context(), [&] { clock.stop(); });
    QObject::connect(watcher, finished, &window_, &MainFen::compare);
    (first().*job)();
    return clock.seconds();
}

double BenchWindow::compare_all()
{
    QAction* compare = nullptr;
    const auto actions = window_.findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
    for (QAction* action : actions) {
        compare = action->text() == u"Comparer Tout"_s ? action : compare;
    }
    if (!compare) {
        qFatal("the window has no action to compare all files");
    }
    Clock clock;
    QObject::disconnect(&window_, &MainFen::alldone, &window_, &MainFen::results);
    QObject::connect(&window_, &MainFen::alldone, clock.context(), [&] { clock.stop(); });
    QObject::connect(&window_, &MainFen::alldone, &window_, &MainFen::results);
    compare->trigger();
    return clock.seconds();
}

double BenchWindow::until_idle(const std::function<void()>& start)
{
    Clock clock;
    QTimer poll;
    bool was_idle = false;
    QObject::connect(&poll, &QTimer::timeout, clock.context(), [&] {
        // Seen twice: what follows a job begins by an event of its own.
        const bool idle = !close_message_box() && !first().job_running();
        if (idle && was_idle) {
            clock.stop();
        }
        was_idle = idle;
    });
    start();
    poll.start(1ms);
    return clock.seconds();
}

double BenchWindow::until_report(const std::function<void()>& start)
{
    Clock clock;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, clock.context(), [&] {
        if (close_message_box()) {
            clock.stop();
        }
    });
    start();
    poll.start(1ms);
    return clock.seconds();
}

void BenchWindow::expect_hashed(int files) const
{
    const auto hashed = [](const QTreeWidgetItem& row) { return !checksum_of(row).isEmpty(); };
    expect(count_files(first(), hashed), files, "hashed");
}

void BenchWindow::expect_identical(int files) const
{
    const QBrush green(Qt::green, Qt::SolidPattern);
    const auto identical = [&](const QTreeWidgetItem& row) {
        return row.background(ColHash) == green;
    };
    expect(count_files(first(), identical), files, "marked as identical in the first pane");
    expect(count_files(second(), identical), files, "marked as identical in the second pane");
}

void settle()
{
    QEventLoop loop;
    QTimer::singleShot(50ms, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace bench
