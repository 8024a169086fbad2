#include "engine/job_run.h"

#include <QMetaObject>
#include <QMutex>
#include <QMutexLocker>
#include <QThreadPool>

#include <algorithm>
#include <utility>

namespace engine {

namespace {

// A display shows some 60 pictures a second; rows need not change more often.
constexpr int slowest_pace_ms = 16;

// The longest stretch of messages before other events have their turn.
constexpr int slice_ms = 6;

} // namespace

/// Where the job leaves its messages. Shared by both threads, so that neither outlives it.
class JobRun::Mailbox
{
  public:
    explicit Mailbox(JobRun* receiver) : receiver_(receiver) {}

    /// Job thread: leaves a message; wakes the receiver unless it will look by itself.
    void post(JobMessage&& message)
    {
        const QMutexLocker lock(&mutex_);
        messages_.push_back(std::move(message));
        if (!awaited_) {
            wake();
        }
    }

    /// Job thread: nothing more will come.
    void close()
    {
        const QMutexLocker lock(&mutex_);
        closed_ = true;
        wake();
    }

    /// Receiver: takes all messages. Answers whether the job is over. With nothing to take, the
    /// next message wakes the receiver at once.
    bool take(std::vector<JobMessage>& into)
    {
        const QMutexLocker lock(&mutex_);
        into.swap(messages_);
        awaited_ = !into.empty();
        return closed_;
    }

    /// Receiver: is going away, nothing may reach it any more.
    void abandon()
    {
        const QMutexLocker lock(&mutex_);
        receiver_ = nullptr;
    }

  private:
    void wake()
    {
        if (receiver_) {
            awaited_ = true;
            QMetaObject::invokeMethod(receiver_, &JobRun::deliver, Qt::QueuedConnection);
        }
    }

    QMutex mutex_;
    std::vector<JobMessage> messages_;
    JobRun* receiver_;
    bool awaited_ = false; ///< the receiver has been woken or looks again by its timer
    bool closed_ = false;
};

JobRun::JobRun(Handler handler)
    : handler_(std::move(handler)), mailbox_(std::make_shared<Mailbox>(this)),
      future_(promise_.future())
{
    pace_.setSingleShot(true);
    pace_.setTimerType(Qt::PreciseTimer);
    connect(&pace_, &QTimer::timeout, this, &JobRun::deliver);
    promise_.start();
}

void JobRun::start(HashPlan plan, bool stopped)
{
    if (stopped) {
        stop();
    }
    QThreadPool* const pool = QThreadPool::globalInstance();
    pool->start([pool, plan = std::move(plan), stop = stop_.get_token(), mailbox = mailbox_] {
        // A running job does not count: however small the pool, two panes hash side by side, and
        // neither waits for the other to see that it was stopped.
        pool->releaseThread();
        run_hash_job(plan, stop, [&](JobMessage&& message) { mailbox->post(std::move(message)); });
        mailbox->close();
        pool->reserveThread();
    });
}

JobRun::~JobRun()
{
    stop();
    mailbox_->abandon();
}

void JobRun::stop()
{
    stop_.request_stop();
}

void JobRun::deliver()
{
    if (position_ == pending_.size()) {
        pending_.clear();
        position_ = 0;
        job_over_ = mailbox_->take(pending_);
    }
    const bool anything = !pending_.empty();
    handle_pending();
    if (position_ < pending_.size()) {
        pace_.start(0);
    } else if (job_over_) {
        finish();
    } else if (anything) {
        pace_.start(pace_ms_);
        pace_ms_ = std::min(2 * pace_ms_, slowest_pace_ms);
    }
}

void JobRun::handle_pending()
{
    QElapsedTimer slice;
    slice.start();
    while (position_ < pending_.size()) {
        // Taken out, so that no later event has to let go of all of them at once.
        JobMessage message = std::move(pending_[position_++]);
        handler_.message(message);
        if (position_ % 64 == 0 && slice.hasExpired(slice_ms)) {
            break;
        }
    }
}

void JobRun::finish()
{
    if (std::exchange(finishing_, true)) {
        return;
    }
    handler_.ended();
    promise_.finish();
}

} // namespace engine
