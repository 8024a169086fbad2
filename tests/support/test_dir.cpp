#include "tests/support/test_dir.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

bool TestDir::createHuge(const QString& name) { return QFile::resize(createFile(name), huge); }

QString TestDir::createDir(const QString& name)
{
    QDir().mkpath(filePath(name));
    return filePath(name);
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

bool permissions_hold()
{
    TestDir dir;
    QFile file(dir.createFile(u"probe"_s, "x"));
    file.setPermissions({});
    return !file.open(QIODevice::ReadOnly);
}
