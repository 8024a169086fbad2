#include "tree/background_listing.h"

#include <QFutureWatcher>
#include <QSemaphore>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <memory>

namespace {

// Up to here nobody notices that the window does not answer.
constexpr int patience_ms = 40;

// Listings that drives without an answer may hold on to, before others have to wait.
constexpr int most_threads = 8;

/// Threads for listings alone: the global pool may be full of jobs, and a drive that no longer
/// answers must block neither them nor the end of the program, so the pool is never destroyed.
QThreadPool& listing_pool()
{
    static QThreadPool* const pool = [] {
        auto* made = new QThreadPool;
        made->setMaxThreadCount(most_threads);
        return made;
    }();
    return *pool;
}

} // namespace

std::optional<QList<engine::Entry>> BackgroundListing::list(const QString& path,
                                                            QDir::Filters filters)
{
    const auto listed = std::make_shared<QSemaphore>();
    const QFuture<QList<engine::Entry>> future =
        QtConcurrent::run(&listing_pool(), [path, filters, stop = stop_, listed] {
            QList<engine::Entry> entries = engine::list_directory(path, filters, stop);
            listed->release();
            return entries;
        });
    if (!listed->tryAcquire(1, patience_ms)) {
        QFutureWatcher<QList<engine::Entry>> watcher;
        QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop_, &QEventLoop::quit);
        watcher.setFuture(future);
        loop_.exec();
        if (!listed->tryAcquire()) {
            abandon(); // the loop ended without the listing: the application quits
        }
    }
    return abandoned() ? std::nullopt : std::optional(future.result());
}

void BackgroundListing::abandon()
{
    stop_->store(true, std::memory_order_relaxed);
    loop_.quit();
}
