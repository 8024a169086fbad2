#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// A temporary directory in which a test lays out its files. Names are paths below it.
class TestDir : public QTemporaryDir
{
  public:
    static constexpr qint64 huge = qint64(1) << 40;

    /// Writes a file, with the directories on its way; answers its full path.
    QString createFile(const QString& name, const QByteArray& content = {});

    /// Writes a file that takes longer to read than any test lasts; answers whether there can be
    /// sparse files of that size.
    bool createHuge(const QString& name);

    /// Answers the full path.
    QString createDir(const QString& name);

    /// Full path of the directory itself, by its canonical name, or of something in it.
    QString at(const QString& name = {}) const;

    /// The content of a file; null when there is none.
    QByteArray read(const QString& name) const;

    /// The names of all that is in the directory, or in one below it, parted by ", ".
    QString entries(const QString& name = {}) const;

    /// Files that stay open until the directory goes.
    QList<std::shared_ptr<void>> open_files;
};

/// Whether file permissions hold for this user. To root every file is readable.
bool permissions_hold();

/// Makes a file that exists, is listed and cannot be opened, whoever runs the test.
void make_unreadable(TestDir& dir, const QString& name);
