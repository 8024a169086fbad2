#pragma once

#include <QStringList>

#include <vector>

namespace platform {

/// The indices of the names, in the order that QString::localeAwareCompare() puts them in; those
/// that it calls equal stay as they were. Comparing names by the locale's rules costs too much to
/// be done at every step of a sort. Safe in any thread.
std::vector<qsizetype> name_order(const QStringList& names);

} // namespace platform
