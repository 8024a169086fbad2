#pragma once

#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrentRun>

/// Threads for what the drives may take long to answer: listings and checksum files. The global
/// pool may be full of jobs, and a drive that no longer answers must hold up neither these nor the
/// end of the program, so this pool is never destroyed.
QThreadPool& background_pool();

/// Runs `work` in the background and hands its result to `then` in the thread of `receiver`, unless
/// that is gone by then.
template<class Work, class Then>
void run_in_background(QObject* receiver, Work work, Then then)
{
    using Result = decltype(work());
    auto* watcher = new QFutureWatcher<Result>(receiver);
    QObject::connect(watcher, &QFutureWatcherBase::finished, receiver,
                     [watcher, then = std::move(then)] {
                         watcher->deleteLater();
                         then(watcher->future().takeResult());
                     });
    watcher->setFuture(QtConcurrent::run(&background_pool(), std::move(work)));
}
