#include "platform/sequential_file.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

// Below this size the whole file comes with the first read.
constexpr qint64 worth_reading_ahead = 0x40000;

/// A descriptor of a regular file, or -1.
int open_descriptor(const QString& path, qint64& size)
{
    const QByteArray native = QFile::encodeName(path);
    // Without O_NONBLOCK, opening a pipe would wait for somebody to write into it.
    const int descriptor = ::open(native.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat status = {};
    if (descriptor >= 0 && (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        ::close(descriptor);
        return -1;
    }
    size = status.st_size;
    return descriptor;
}

} // namespace

SequentialFile::~SequentialFile()
{
    if (descriptor_ != closed) {
        ::close(descriptor_);
    }
}

bool SequentialFile::open(const QString& path)
{
    descriptor_ = open_descriptor(path, size_);
#ifdef POSIX_FADV_SEQUENTIAL
    if (descriptor_ != closed && size_ > worth_reading_ahead) {
        ::posix_fadvise(descriptor_, 0, 0, POSIX_FADV_SEQUENTIAL);
    }
#endif
    return descriptor_ != closed;
}

qint64 SequentialFile::read(char* into, qint64 length)
{
    ssize_t got = 0;
    do {
        got = ::read(descriptor_, into, static_cast<size_t>(length));
    } while (got < 0 && errno == EINTR);
    return got;
}

bool open_regular(QFile& file, const QString& path)
{
    qint64 size = 0;
    const int descriptor = open_descriptor(path, size);
    if (descriptor < 0) {
        return false;
    }
    file.setFileName(path);
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return false;
    }
    return true;
}

} // namespace platform
