#pragma once

#include <QDir>
#include <QList>
#include <QString>

#include <stop_token>

namespace engine {

/// One file or directory of a listing.
struct Entry
{
    QString name;    ///< file name
    QString path;    ///< canonical path
    qint64 size = 0; ///< bytes; 0 for directories
    bool is_dir = false;
    bool is_link = false; ///< its path is not its name in the directory that was listed
};

/// The filters of the two kinds of listing: what a pane shows, which offers the way up, and what
/// a directory holds. Hidden and system entries are in neither.
inline constexpr QDir::Filters shown_entries = QDir::Dirs | QDir::Files | QDir::NoDot;
inline constexpr QDir::Filters held_entries = QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot;

/// What is known of a directory's path. Finding out costs a look at every directory on its way.
enum class PathIs : quint8 { Any, Canonical };

/// Lists a directory: directories before files, each group by name in the order of the locale, as
/// QDir::Name | QDir::DirsFirst | QDir::LocaleAware sorts, but ".." before all others. Entries that
/// are neither files nor directories are left out; a directory that cannot be read gives an empty
/// list. Safe in any thread; ends early, with a partial list, when the flag is raised.
QList<Entry> list_directory(const QString& path, QDir::Filters filters,
                            const std::stop_token& stop = {}, PathIs path_is = PathIs::Any);

} // namespace engine
