#include "platform/new_file.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <cstdio>

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

/// Renames a file unless one has the new name already.
bool rename_to_new(const QByteArray& from, const QByteArray& to)
{
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
#endif
    // A file system that cannot do it in one step: an empty file takes the name first, which fails
    // where there is one. Linking would do as well, but such file systems often have no links.
    const int place = ::open(to.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, everybody);
    if (place < 0) {
        return false;
    }
    ::close(place);
    const bool renamed = ::rename(from.constData(), to.constData()) == 0;
    if (!renamed) {
        ::unlink(to.constData());
    }
    return renamed;
}

/// Where files must have a name from the start: a hidden one until the file is complete.
bool write_named(const QByteArray& directory, const QByteArray& path, const QByteArray& bytes)
{
    // Short, because the name of the file itself may be as long as names can be.
    const quint64 number = QRandomGenerator::global()->generate64();
    const QByteArray hidden = directory + "/.Tavrel-" + QByteArray::number(number, 36);
    const int descriptor =
        ::open(hidden.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, everybody);
    if (descriptor < 0) {
        return false;
    }
    const bool written = write_all(descriptor, bytes);
    const bool whole = ::close(descriptor) == 0 && written;
    const bool named = whole && rename_to_new(hidden, path);
    if (!named) {
        ::unlink(hidden.constData());
    }
    return named;
}

} // namespace

bool write_new_file(const QString& path, const QByteArray& bytes)
{
    const QByteArray name = QFile::encodeName(path);
    const QByteArray directory = QFile::encodeName(QFileInfo(path).path());
    const int descriptor =
        ::open(directory.constData(), O_WRONLY | O_TMPFILE | O_CLOEXEC, everybody);
    if (descriptor < 0) {
        return write_named(directory, name, bytes);
    }
    const bool named = write_all(descriptor, bytes) && name_file(descriptor, name);
    const int reason = errno;
    const bool closed = ::close(descriptor) == 0;
    if (named && !closed) {
        ::unlink(name.constData());
    }
    // Without /proc a file cannot be named afterwards.
    return named ? closed : reason == ENOENT && write_named(directory, name, bytes);
}

} // namespace platform
