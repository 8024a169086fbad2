#pragma once

#include "engine/listing.h"
#include "engine/stop_flag.h"

#include <QEventLoop>
#include <QFuture>
#include <QSemaphore>

#include <memory>
#include <optional>

/// A listing of a directory by a thread of its own, for the GUI thread to wait for.
///
/// A short listing is simply waited for. During a longer one, of a huge directory or a slow drive,
/// a local event loop keeps the window alive, so anything may have happened by the time wait()
/// returns; whoever makes this listing pointless meanwhile abandons it.
class BackgroundListing final
{
  public:
    /// Starts to list, see engine::list_directory().
    BackgroundListing(const QString& path, QDir::Filters filters);

    /// A listing that still runs is abandoned.
    ~BackgroundListing();
    Q_DISABLE_COPY_MOVE(BackgroundListing)

    /// The directory's entries. Nothing when the listing was abandoned or the application quit
    /// meanwhile. Call once.
    std::optional<QList<engine::Entry>> wait();

    /// Nobody wants the result any more; wait() returns soon, even if the drive does not answer.
    void abandon();

    bool abandoned() const { return engine::stop_requested(stop_); }

    const QString& path() const { return path_; }
    QDir::Filters filters() const { return filters_; }

  private:
    QString path_;
    QDir::Filters filters_;
    engine::StopFlag stop_ = engine::make_stop_flag();
    std::shared_ptr<QSemaphore> listed_;
    QFuture<QList<engine::Entry>> future_;
    QEventLoop loop_;
};
