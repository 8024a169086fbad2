#pragma once

#include <QCache>
#include <QFileIconProvider>
#include <QIcon>
#include <QString>

/// System icons of files and directories, fetched once for all entries that share one: asking the
/// system for every row of a large directory would take longer than listing it.
///
/// GUI thread only.
class IconCache final
{
  public:
    /// The icon of a drive, by its root path.
    QIcon drive(const QString& root);

    QIcon directory();
    QIcon file(const QString& path);

    /// The cache that all panes share.
    static IconCache& shared();

  private:
    QFileIconProvider provider_;
    QCache<QString, QIcon> files_{1000}; ///< by platform::file_icon_key(), which may be a path
    QIcon directory_;
};
