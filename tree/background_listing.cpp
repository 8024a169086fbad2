#include "tree/background_listing.h"

#include <QEventLoop>
#include <QFutureWatcher>
#include <QSemaphore>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <memory>

namespace {

// Up to here nobody notices that the window does not answer.
constexpr int patience_ms = 40;

/// Threads for listings alone: the global pool may be full of jobs, and a drive that no longer
/// answers must block neither them nor the end of the program, so the pool is never destroyed.
QThreadPool& listing_pool()
{
    static QThreadPool* const pool = [] {
        auto* made = new QThreadPool;
        made->setMaxThreadCount(8);
        return made;
    }();
    return *pool;
}

} // namespace

std::optional<QList<engine::Entry>> list_in_background(const QString& path, QDir::Filters filters,
                                                       const engine::StopFlag& stop)
{
    const auto listed = std::make_shared<QSemaphore>();
    const QFuture<QList<engine::Entry>> future =
        QtConcurrent::run(&listing_pool(), [path, filters, stop, listed] {
            QList<engine::Entry> entries = engine::list_directory(path, filters, stop);
            listed->release();
            return entries;
        });
    if (!listed->tryAcquire(1, patience_ms)) {
        QEventLoop loop;
        QFutureWatcher<QList<engine::Entry>> watcher;
        QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop, &QEventLoop::quit);
        watcher.setFuture(future);
        loop.exec();
        if (!listed->tryAcquire()) {
            stop->store(true, std::memory_order_relaxed);
        }
    }
    if (engine::stop_requested(stop)) {
        return std::nullopt;
    }
    return future.result();
}
