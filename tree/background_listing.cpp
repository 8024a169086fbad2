#include "tree/background_listing.h"

#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrentRun>

namespace {

// Up to here nobody notices that the window does not answer, even when it has just emptied a large
// pane or filled one.
constexpr int patience_ms = 20;

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

BackgroundListing::BackgroundListing(const QString& path, QDir::Filters filters)
    : path_(path), filters_(filters), listed_(std::make_shared<QSemaphore>()),
      future_(QtConcurrent::run(&listing_pool(), [path, filters, stop = stop_, listed = listed_] {
          QList<engine::Entry> entries = engine::list_directory(path, filters, stop);
          listed->release();
          return entries;
      }))
{}

BackgroundListing::~BackgroundListing()
{
    abandon();
}

std::optional<QList<engine::Entry>> BackgroundListing::wait()
{
    if (!listed_->tryAcquire(1, patience_ms)) {
        QFutureWatcher<QList<engine::Entry>> watcher;
        QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop_, &QEventLoop::quit);
        watcher.setFuture(future_);
        loop_.exec();
        if (!listed_->tryAcquire()) {
            abandon(); // the loop ended without the listing: the application quits
        }
    }
    return abandoned() ? std::nullopt : std::optional(future_.result());
}

void BackgroundListing::abandon()
{
    stop_->store(true, std::memory_order_relaxed);
    loop_.quit();
}
