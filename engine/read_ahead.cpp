#include "engine/read_ahead.h"

#include "engine/file_window.h"
#include "platform/read_ahead.h"

#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace engine {

namespace {

// Enough to keep a drive busy while the job digests, and little enough not to be pushed out of
// memory again before the job comes.
constexpr size_t most_ahead = 128;
constexpr qint64 most_bytes_ahead = 0x1000000;

// Of a larger file, the window reads the rest when the job has come to it.
constexpr qint64 largest_head = 0x200000;

// After so many files in a row that are in memory, the next ones will be there as well.
constexpr int enough_in_memory = 256;

} // namespace

/// Shared by the job and the thread that reads ahead for it, so that neither outlives it.
class ReadAhead::Helper
{
  public:
    struct Reader
    {
        QString path;
        qint64 offset = 0;
    };

    Helper(QStringList exclusions, const std::stop_token& stop)
        : stop_(stop), scout_(std::move(exclusions), stop)
    {}

    bool is_at_work() const { return at_work_.load(std::memory_order_relaxed); }

    /// Job: comes to this place. What was asked for up to it makes room.
    void pass(const QString& path)
    {
        const std::lock_guard lock(mutex_);
        const auto is_here = [&](const Asked& asked) { return asked.path == path; };
        const auto here = std::find_if(asked_.begin(), asked_.end(), is_here);
        if (here == asked_.end()) {
            // The job is past the helper, or on another way: what the helper does is of no use.
            rest();
            return;
        }
        for (auto passed = asked_.begin(); passed <= here; ++passed) {
            bytes_ -= passed->bytes;
        }
        asked_.erase(asked_.begin(), here + 1);
        if (full_ && 4 * asked_.size() <= 3 * most_ahead && 4 * bytes_ <= 3 * most_bytes_ahead) {
            full_ = false;
            wake_.notify_one();
        }
    }

    /// Job: shows the way. Answers whether there is no thread yet to follow it.
    bool show(Route&& route)
    {
        const std::lock_guard lock(mutex_);
        route_ = std::move(route);
        rest();
        at_work_.store(true, std::memory_order_relaxed);
        wake_.notify_one();
        return !std::exchange(has_thread_, true);
    }

    /// Job: has read so much of this file; of none, when the path is empty.
    void follow(const Reader& reader)
    {
        const std::lock_guard lock(mutex_);
        reader_ = reader;
        wake_.notify_one();
    }

    /// Job: is over.
    void dismiss()
    {
        const std::lock_guard lock(mutex_);
        over_ = true;
        wake_.notify_one();
    }

    /// Reads ahead until the job is over, in a thread of its own.
    void run()
    {
        for (;;) {
            switch (next_duty()) {
            case Duty::Window:
                read_on();
                break;
            case Duty::Scout:
                look_at_next_place();
                break;
            case Duty::None:
                return;
            }
        }
    }

  private:
    struct Asked
    {
        QString path;
        qint64 bytes = 0;
    };

    enum class Duty : quint8 { Window, Scout, None };

    /// Under the mutex.
    void rest()
    {
        at_work_.store(false, std::memory_order_relaxed);
        asked_.clear();
        bytes_ = 0;
        full_ = false;
        in_memory_ = 0;
    }

    /// Waits until there is something to do; none when the job is over.
    Duty next_duty()
    {
        std::unique_lock lock(mutex_);
        while (!over_) {
            const bool stopped = stop_.stop_requested();
            // What is being read comes before what will be.
            if (!stopped && (reader_ || window_has_room_)) {
                return Duty::Window;
            }
            if (route_) {
                scout_.take(std::move(*route_));
                route_.reset();
            }
            if (!stopped && is_at_work() && !full_) {
                return Duty::Scout;
            }
            wake_.wait(lock);
        }
        return Duty::None;
    }

    void read_on()
    {
        std::optional<Reader> reader;
        {
            const std::lock_guard lock(mutex_);
            reader.swap(reader_);
        }
        if (reader && reader->path != window_path_) {
            window_path_ = reader->path;
            window_.reset();
            if (!window_path_.isEmpty()) {
                window_.emplace(window_path_);
            }
        }
        if (reader && window_) {
            window_->move_to(reader->offset);
        }
        window_has_room_ = window_ && window_->read_on();
    }

    void look_at_next_place()
    {
        const std::optional<Scout::Place> place = scout_.next();
        if (ask_for(place) && !place->is_dir) {
            take_note(platform::fetch_head(place->path, largest_head));
        }
    }

    /// Puts the place on the list before it is opened: the job may come to it meanwhile. Answers
    /// whether the place, or the way to it, is still wanted.
    bool ask_for(const std::optional<Scout::Place>& place)
    {
        const std::lock_guard lock(mutex_);
        if (route_ || !is_at_work()) {
            return false;
        }
        if (!place) {
            rest();
            return false;
        }
        asked_.push_back({place->path, 0});
        full_ = asked_.size() >= most_ahead;
        return true;
    }

    void take_note(const platform::Head& head)
    {
        const std::lock_guard lock(mutex_);
        // Only this thread adds to the list, so the file in question is the last of it, unless the
        // job has come past it.
        if (!asked_.empty()) {
            asked_.back().bytes = head.bytes;
            bytes_ += head.bytes;
            full_ = full_ || bytes_ >= most_bytes_ahead;
        }
        in_memory_ = head.from_drive ? 0 : in_memory_ + 1;
        if (in_memory_ >= enough_in_memory) {
            rest();
        }
    }

    const std::stop_token stop_;
    // Not the toolkit's: its condition hides from the thread sanitizer that it lets go of the
    // mutex.
    std::mutex mutex_;
    std::condition_variable wake_;
    std::optional<Route> route_; ///< shown and not taken yet
    std::deque<Asked> asked_;    ///< places before the job, in its order
    qint64 bytes_ = 0;           ///< of them
    int in_memory_ = 0;          ///< files in a row of which nothing was missing
    bool full_ = false;
    bool has_thread_ = false;
    bool over_ = false;
    std::optional<Reader> reader_;     ///< where it is now, when the window has not moved there
    std::atomic_bool at_work_ = false; ///< changes under the mutex

    // of the helper's thread
    Scout scout_;
    QString window_path_;
    std::optional<FileWindow> window_;
    bool window_has_room_ = false;
};

ReadAhead::ReadAhead(QStringList exclusions, const std::stop_token& stop)
    : helper_(std::make_shared<Helper>(std::move(exclusions), stop))
{}

ReadAhead::~ReadAhead()
{
    helper_->dismiss();
}

void ReadAhead::reached(const QString& path)
{
    if (told_ >= 0) {
        told_ = -1;
        helper_->follow({});
    }
    if (helper_->is_at_work()) {
        helper_->pass(path);
    }
}

void ReadAhead::waiting(const std::function<Route()>& route)
{
    if (helper_->is_at_work() || !helper_->show(route())) {
        return;
    }
    QThreadPool* const pool = QThreadPool::globalInstance();
    pool->start([pool, helper = helper_] {
        // Like a job, it does not count: it sleeps most of the time.
        pool->releaseThread();
        helper->run();
        pool->reserveThread();
    });
}

void ReadAhead::reading(const QString& path, qint64 offset)
{
    if (told_ < 0 || offset - told_ >= FileWindow::step) {
        told_ = offset;
        helper_->follow({path, offset});
    }
}

} // namespace engine
