#include "engine/listing.h"

#include "platform/directory_reader.h"
#include "platform/name_order.h"

#include <QFileInfo>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace engine {

namespace {

/// Canonical paths of a directory's entries. Only links need a look at the disk: any other entry
/// stands in its directory under its own name.
class CanonicalPaths
{
  public:
    CanonicalPaths(const QString& directory, PathIs path_is)
        : prefix_(path_is == PathIs::Canonical ? directory
                                               : QFileInfo(directory).canonicalFilePath())
    {
        // None when the directory is gone, for this moment at least: what is found in it later must
        // not pass for entries of the root.
        if (prefix_.isEmpty()) {
            prefix_ = QDir::cleanPath(QFileInfo(directory).absoluteFilePath());
        }
        if (!prefix_.endsWith(u'/')) {
            prefix_ += u'/';
        }
    }

    QString of(const platform::DirectoryEntry& entry) const
    {
        const QString path = prefix_ + entry.name;
        if (entry.is_link) {
            return platform::link_target(path);
        }
        return entry.name == ".."_L1 ? QFileInfo(path).canonicalFilePath() : path;
    }

  private:
    QString prefix_;
};

/// The indices of the entries in display order.
std::vector<qsizetype> display_order(const QList<Entry>& entries)
{
    QStringList names;
    names.reserve(entries.size());
    for (const Entry& entry : entries) {
        names.append(entry.name);
    }
    std::vector<qsizetype> order = platform::name_order(names);
    std::stable_partition(order.begin(), order.end(),
                          [&](qsizetype i) { return entries[i].is_dir; });
    // In many locales a name that begins with a blank or a sign comes before it.
    const auto way_up = std::find_if(order.begin(), order.end(),
                                     [&](qsizetype i) { return entries[i].name == ".."_L1; });
    if (way_up != order.end()) {
        std::rotate(order.begin(), way_up, way_up + 1);
    }
    return order;
}

} // namespace

QList<Entry> list_directory(const QString& path, QDir::Filters filters, const std::stop_token& stop,
                            PathIs path_is)
{
    const CanonicalPaths canonical(path, path_is);
    QList<Entry> found;
    platform::read_directory(path, filters, [&](platform::DirectoryEntry&& entry) {
        const QString entry_path = canonical.of(entry);
        found.append({std::move(entry.name), entry_path, entry.size, entry.is_dir, entry.is_link});
        return !stop.stop_requested();
    });
    if (stop.stop_requested()) {
        return found;
    }
    QList<Entry> sorted;
    sorted.reserve(found.size());
    for (const qsizetype i : display_order(found)) {
        sorted.append(std::move(found[i]));
    }
    return sorted;
}

} // namespace engine
