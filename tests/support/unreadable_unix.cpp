#include "tests/support/test_dir.h"

#include <QFile>

using namespace Qt::StringLiterals;

QString make_unreadable(TestDir& dir, const QString& name)
{
    if (permissions_hold()) {
        const QString path = dir.createFile(name, "secret");
        QFile::setPermissions(path, {});
        return path;
    }
    // Linux lets nobody read this one, not even root.
    const QString write_only = u"/proc/sys/vm/compact_memory"_s;
    QFile probe(write_only);
    if (!probe.exists() || probe.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QString path = dir.filePath(name);
    return QFile::link(write_only, path) ? path : QString();
}
