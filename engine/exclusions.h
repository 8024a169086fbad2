#pragma once

#include <QStringList>

namespace engine {

/// The suffixes of an exclusion text: entries separated by ";", empty ones dropped, every "*." in
/// an entry deleted. Blanks are kept, so that an entry says exactly what was typed.
QStringList parse_exclusions(const QString& text);

/// The exclusion text of a list of suffixes: each with "*." before it, separated by ";".
QString format_exclusions(const QStringList& suffixes);

/// Whether a file's type is left out: the suffix of its path (the text after the last dot of the
/// name) stands in the list, whatever the case.
bool is_excluded(const QStringList& suffixes, const QString& path);

/// Leaves checksum files out while they are written or verified by, and takes back what that added:
/// one entry of each kind.
void exclude_checksum_files(QStringList& suffixes);
void include_checksum_files(QStringList& suffixes);

} // namespace engine
