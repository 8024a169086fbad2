#include "tests/support/test_dir.h"

void make_unreadable(TestDir& dir, const QString& name)
{
    QFile file(dir.createFile(name, "secret"));
    file.setPermissions({});
    // To root every file is readable, but for this one, which Linux lets nobody read.
    const QString write_only = u"/proc/sys/vm/compact_memory"_s;
    if (file.open(QIODevice::ReadOnly) && file.remove() &&
        !QFile::link(write_only, file.fileName())) {
        qFatal("root can read everything here");
    }
}
