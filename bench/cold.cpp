#include "bench/cold.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

namespace bench {

void make_cold(const QStringList& files)
{
    // What still waits to be written would stay.
    ::sync();
    for (const QString& path : files) {
        const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
        if (file < 0 || ::posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED) != 0) {
            qFatal("cannot put %s out of memory", qPrintable(path));
        }
        ::close(file);
    }
    const int all = ::open("/proc/sys/vm/drop_caches", O_WRONLY | O_CLOEXEC);
    if (all >= 0) {
        constexpr char pages_and_names = '3';
        [[maybe_unused]] const auto written = ::write(all, &pages_and_names, 1);
        ::close(all);
    }
}

Peer cold(const Peer& peer, const QStringList& files)
{
    return {peer.name,
            [=] {
                make_cold(files);
                return peer.run();
            },
            peer.aim};
}

} // namespace bench
