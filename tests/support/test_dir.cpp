#include "tests/support/test_dir.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

using namespace Qt::StringLiterals;

QString TestDir::createFile(const QString& name, const QByteArray& content)
{
    const QString path = filePath(name);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
    return path;
}

QString TestDir::createHuge(const QString& name)
{
    QFile file(createFile(name));
    return file.open(QIODevice::WriteOnly) && file.resize(qint64(1) << 40) ? file.fileName()
                                                                           : QString();
}

QString TestDir::createDir(const QString& name)
{
    const QString made = filePath(name);
    QDir().mkpath(made);
    return made;
}

QString TestDir::at(const QString& name) const
{
    const QString canonical = QFileInfo(path()).canonicalFilePath();
    return name.isEmpty() ? canonical : canonical + u'/' + name;
}

QByteArray TestDir::read(const QString& name) const
{
    QFile file(filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString TestDir::entries(const QString& name) const
{
    const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    return QDir(filePath(name)).entryList(all, QDir::Name).join(u", "_s);
}

QString volume_root(const QString& path)
{
    const QString root = QStorageInfo(path).rootPath();
    return root.isEmpty() ? QDir::rootPath() : root;
}

bool permissions_hold()
{
    TestDir dir;
    const QString path = dir.createFile(u"probe"_s, "x");
    QFile file(path);
    file.setPermissions({});
    return !file.open(QIODevice::ReadOnly);
}
