#include "platform/new_file.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr mode_t everybody = 0666; // less what the user's mask takes away

bool write_all(int descriptor, const QByteArray& bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t written =
            ::write(descriptor, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (written < 0 && errno != EINTR) {
            return false;
        }
        done += std::max<ssize_t>(written, 0);
    }
    return true;
}

/// Gives a file without a name its name, unless that is taken.
bool name_file(int descriptor, const QByteArray& path)
{
    const QByteArray open_file = "/proc/self/fd/" + QByteArray::number(descriptor);
    return ::linkat(AT_FDCWD, open_file.constData(), AT_FDCWD, path.constData(),
                    AT_SYMLINK_FOLLOW) == 0;
}

/// Where files must have a name from the start.
bool write_named(const QByteArray& path, const QByteArray& bytes)
{
    const int descriptor =
        ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, everybody);
    if (descriptor < 0) {
        return false;
    }
    const bool written = write_all(descriptor, bytes);
    const bool whole = ::close(descriptor) == 0 && written;
    if (!whole) {
        ::unlink(path.constData());
    }
    return whole;
}

} // namespace

bool write_new_file(const QString& path, const QByteArray& bytes)
{
    const QByteArray name = QFile::encodeName(path);
    const QByteArray directory = QFile::encodeName(QFileInfo(path).path());
    const int descriptor =
        ::open(directory.constData(), O_WRONLY | O_TMPFILE | O_CLOEXEC, everybody);
    if (descriptor < 0) {
        return write_named(name, bytes);
    }
    const bool named = write_all(descriptor, bytes) && name_file(descriptor, name);
    const int reason = errno;
    const bool closed = ::close(descriptor) == 0;
    if (named && !closed) {
        ::unlink(name.constData());
    }
    // Without /proc a file cannot be named afterwards.
    return named ? closed : reason == ENOENT && write_named(name, bytes);
}

} // namespace platform
