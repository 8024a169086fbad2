#pragma once

#include <QtCore>

using namespace Qt::StringLiterals;

/// A temporary directory in which a test lays out its files. Names are paths below it.
class TestDir : public QTemporaryDir
{
  public:
    static constexpr qint64 huge = qint64(1) << 40;

    /// Writes a file, with the directories on its way; answers its full path.
    QString createFile(const QString& name, const QByteArray& content = {})
    {
        QFile file(filePath(name));
        QDir().mkpath(QFileInfo(file).path());
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("cannot write %s", qPrintable(name));
        }
        return file.fileName();
    }

    /// Writes a file that takes longer to read than any test lasts; answers whether there can be
    /// sparse files of that size.
    bool createHuge(const QString& name) { return QFile::resize(createFile(name), huge); }

    /// Answers the full path.
    QString createDir(const QString& name)
    {
        QDir().mkpath(filePath(name));
        return filePath(name);
    }

    /// Full path of the directory itself, by its canonical name, or of something in it.
    QString at(const QString& name = {}) const
    {
        const QString canonical = QFileInfo(path()).canonicalFilePath();
        return name.isEmpty() ? canonical : canonical + u'/' + name;
    }

    /// The content of a file; null when there is none.
    QByteArray read(const QString& name) const
    {
        QFile file(filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// The names of all that is in the directory, or in one below it, parted by ", ".
    QString entries(const QString& name = {}) const
    {
        const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        return QDir(filePath(name)).entryList(all, QDir::Name).join(u", "_s);
    }

    /// Files that stay open until the directory goes.
    QList<std::shared_ptr<void>> open_files;
};

/// Makes a file that exists, is listed and cannot be opened, whoever runs the test.
void make_unreadable(TestDir& dir, const QString& name);
