#include "platform/sequential_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

bool open_sequential(QFile& file, const QString& path)
{
    const QByteArray native = QFile::encodeName(path);
    // Without O_NONBLOCK, opening a pipe would wait for somebody to write into it.
    const int fd = ::open(native.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0) {
        return false;
    }
    struct stat status = {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(fd);
        return false;
    }
#ifdef POSIX_FADV_SEQUENTIAL
    ::posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
#endif
    file.setFileName(path);
    if (!file.open(fd, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        return false;
    }
    return true;
}

} // namespace platform
