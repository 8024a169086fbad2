#include "rows/icon_cache.h"

#include "platform/icon_key.h"

#include <QApplication>
#include <QFileInfo>
#include <QPointer>

QIcon IconCache::drive(const QString& root)
{
    return provider_.icon(QFileInfo(root));
}

QIcon IconCache::directory()
{
    if (directory_.isNull()) {
        directory_ = provider_.icon(QFileIconProvider::Folder);
    }
    return directory_;
}

QIcon IconCache::file(const QString& path)
{
    const QString key = platform::file_icon_key(path);
    if (const QIcon* known = files_.object(key)) {
        return *known;
    }
    QIcon icon;
    if (!key.isEmpty()) {
        icon = provider_.icon(QFileInfo(path));
    }
    if (icon.isNull()) {
        icon = provider_.icon(QFileIconProvider::File);
    }
    files_.insert(key, new QIcon(icon));
    return icon;
}

IconCache& IconCache::shared()
{
    // Icons must be gone before the application is; as its child the holder is.
    struct Holder : QObject
    {
        using QObject::QObject;
        IconCache cache;
    };
    static QPointer<Holder> holder;
    if (!holder) {
        holder = new Holder(qApp);
    }
    return holder->cache;
}
