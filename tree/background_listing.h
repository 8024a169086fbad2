#pragma once

#include "engine/listing.h"
#include "engine/stop_flag.h"

#include <QEventLoop>

#include <optional>

/// Lists a directory in a thread of its own, for the GUI thread to wait for.
///
/// A short listing is simply waited for. During a longer one, of a huge directory or a slow drive,
/// a local event loop keeps the window alive, so anything may have happened by the time list()
/// returns; whoever makes this listing pointless meanwhile abandons it.
class BackgroundListing final
{
  public:
    /// The directory's entries, see engine::list_directory(). Nothing when the listing was
    /// abandoned or the application quit meanwhile.
    std::optional<QList<engine::Entry>> list(const QString& path, QDir::Filters filters);

    /// Nobody wants the result any more; list() returns soon, even if the drive does not answer.
    void abandon();

    bool abandoned() const { return engine::stop_requested(stop_); }

  private:
    engine::StopFlag stop_ = engine::make_stop_flag();
    QEventLoop loop_;
};
