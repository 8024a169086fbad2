#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// A temporary directory in which a test lays out its files.
class TestDir : public QTemporaryDir
{
  public:
    /// Writes a file, with the directories on its way; answers its full path.
    QString createFile(const QString& name, const QByteArray& content = {});

    /// Writes a file that takes longer to read than any test lasts. Answers its full path, or
    /// nothing where there are no sparse files of that size.
    QString createHuge(const QString& name);

    /// Answers the full path.
    QString createDir(const QString& name);

    /// Canonical path of the directory itself, or of something in it.
    QString at(const QString& name = {}) const;

    /// The content of a file; null when there is none.
    QByteArray read(const QString& name) const;

    /// The names of all that is in the directory, or in one below it, parted by ", ".
    QString entries(const QString& name = {}) const;

    /// Keeps an open file until the directory goes.
    void keep_open(std::shared_ptr<void> file) { open_files_.append(std::move(file)); }

  private:
    QList<std::shared_ptr<void>> open_files_;
};

/// Where the volume of a path is mounted. In a changed root the system names no mount point for it.
QString volume_root(const QString& path);

/// Whether file permissions hold for this user. To root every file is readable.
bool permissions_hold();

/// A file that exists, is listed and cannot be opened, whoever runs the test; empty where there is
/// none. It comes to stand as `name` in the directory.
QString make_unreadable(TestDir& dir, const QString& name);
