#include "tests/support/test_dir.h"

#include <QFile>

using namespace Qt::StringLiterals;

void make_unreadable(TestDir& dir, const QString& name)
{
    if (permissions_hold()) {
        QFile::setPermissions(dir.createFile(name, "secret"), {});
        return;
    }
    // Linux lets nobody read this one, not even root.
    const QString write_only = u"/proc/sys/vm/compact_memory"_s;
    if (!QFile::exists(write_only) || QFile(write_only).open(QIODevice::ReadOnly)) {
        qFatal("root can read everything here");
    }
    QFile::link(write_only, dir.filePath(name));
}
