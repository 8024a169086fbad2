#pragma once

#include "engine/hash_job.h"

#include <QElapsedTimer>
#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QTimer>

#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

namespace engine {

/// A hash job on the global thread pool, seen from the thread that started it.
///
/// The job's messages arrive in that thread, in order, gathered at the pace of a display and
/// handed over in slices short enough to leave the event loop free. The future reports running
/// until the last message has been handled and `ended` has been called; only then does it finish.
/// So whoever sees the future finished sees everything that the job did.
///
/// Deleting a run raises its stop flag and drops what has not been delivered; it does not wait.
class JobRun final : public QObject
{
    Q_OBJECT

  public:
    struct Handler
    {
        std::function<void(JobMessage&)> message;
        std::function<void()> ended; ///< after the last message
    };

    /// A run that is announced: its future reports running, though the work waits for start().
    explicit JobRun(Handler handler);
    ~JobRun() override;

    /// Begins the work. `stopped` raises the stop flag from the start. Call once.
    void start(HashPlan plan, bool stopped);

    /// Asks the job to end early. The messages until then still arrive.
    void stop();

    /// Runs from construction until the last message has been handled.
    QFuture<void> future() const { return future_; }

  private:
    class Mailbox;

    void deliver();
    void handle_pending();
    void finish();

    Handler handler_;
    std::stop_source stop_;
    std::shared_ptr<Mailbox> mailbox_;
    QPromise<void> promise_;
    QFuture<void> future_;
    QTimer pace_;
    int pace_ms_ = 2; ///< quick at first: a short job leaves little to be shown at its end
    std::vector<JobMessage> pending_;
    size_t position_ = 0;
    bool job_over_ = false;  ///< pending_ holds the last messages
    bool finishing_ = false; ///< both a wake-up and the timer may find the job over
};

} // namespace engine
