#pragma once

#include <QString>
#include <QStringList>

namespace bench {

/// The files that are measured, in sets below one folder. A set is made when it is first asked
/// for, and found again by whoever asks next, a later run included. Sets of different copies hold
/// the same names and contents.
class Data
{
  public:
    explicit Data(const QString& folder);

    /// A directory with one file of this many bytes.
    QString large(qint64 bytes, QChar copy = u'a') const;

    /// A directory with this many files of 4 KiB.
    QString flat(int files, QChar copy = u'a') const;

    /// A directory with one subdirectory, `nested_name`, which holds so many files of 4 KiB in so
    /// many subdirectories.
    QString nested(int files, int directories) const;

    /// A directory with this many files of 4 KiB and an MD5 checksum file of them, `list_name`.
    QString listed(int files) const;

    /// A directory without anything in it.
    QString empty(QChar copy = u'a') const;

    static QString nested_name();
    static QString list_name();

  private:
    template<class Fill>
    QString make_once(const QString& name, Fill fill) const;

    QString folder_;
};

/// The full paths of all files below a directory.
QStringList files_below(const QString& directory);

} // namespace bench
