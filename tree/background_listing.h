#pragma once

#include "engine/listing.h"
#include "engine/stop_flag.h"

#include <optional>

/// Lists a directory (see engine::list_directory) in a thread of its own and waits for it, for the
/// GUI thread. A short listing is simply waited for; during a longer one, of a huge directory or a
/// slow drive, a local event loop keeps the window alive, so anything may have happened by the
/// time this returns. Gives nothing when the flag was raised or the application quit meanwhile.
std::optional<QList<engine::Entry>> list_in_background(const QString& path, QDir::Filters filters,
                                                       const engine::StopFlag& stop);
