#include "platform/sequential_file.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace platform {

namespace {

// Below this size the whole file comes with the first read.
constexpr qint64 worth_reading_ahead = 0x40000;

// Where the drive takes small requests, the system drops what exceeds one of them.
constexpr qint64 largest_request = 0x20000;

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

#ifdef __linux__

/// Which pages of a file are in memory: a byte for each, its lowest bit set when so. Empty when the
/// system does not tell. The stretch begins with a page.
std::vector<unsigned char> pages_in_memory(int descriptor, Stretch of, qint64 page)
{
    const auto length = static_cast<size_t>(of.end - of.begin);
    // A mapping that nobody can read through: the file may be cut short at any time.
    void* const mapping = ::mmap(nullptr, length, PROT_NONE, MAP_SHARED, descriptor, of.begin);
    if (mapping == MAP_FAILED) {
        return {};
    }
    std::vector<unsigned char> pages(static_cast<size_t>((of.end - of.begin + page - 1) / page));
    const bool told = ::mincore(mapping, length, pages.data()) == 0;
    ::munmap(mapping, length);
    return told ? pages : std::vector<unsigned char>();
}

#endif

} // namespace

struct SequentialFile::Pending
{};

SequentialFile::SequentialFile() = default;

SequentialFile::~SequentialFile()
{
    if (handle_ != closed) {
        ::close(static_cast<int>(handle_));
    }
}

bool SequentialFile::open(const QString& path)
{
    const int descriptor = open_descriptor(path, size_);
    handle_ = descriptor;
#ifdef POSIX_FADV_SEQUENTIAL
    if (descriptor != closed && size_ > worth_reading_ahead) {
        ::posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    }
#endif
    return descriptor != closed;
}

void SequentialFile::seek(qint64 offset)
{
    ::lseek(static_cast<int>(handle_), offset, SEEK_SET);
}

qint64 SequentialFile::read(char* into, qint64 length)
{
    ssize_t got = 0;
    do {
        got = ::read(static_cast<int>(handle_), into, static_cast<size_t>(length));
    } while (got < 0 && errno == EINTR);
    return got;
}

qint64 SequentialFile::read_at_hand(char* into, qint64 length)
{
#ifdef RWF_NOWAIT
    iovec part = {};
    part.iov_base = into;
    part.iov_len = static_cast<size_t>(length);
    constexpr off_t where_it_stands = -1;
    const ssize_t got = ::preadv2(static_cast<int>(handle_), &part, 1, where_it_stands, RWF_NOWAIT);
    if (got > 0) {
        return got;
    }
    if (got < 0 && errno == EAGAIN) {
        return would_wait;
    }
#else
    Q_UNUSED(into)
    Q_UNUSED(length)
#endif
    // Some systems have answered 0 before the end. Only a read that may wait knows the end.
    return cannot_tell;
}

bool SequentialFile::is_at_hand(qint64 offset) const
{
    return offset >= size_ || absent({offset, offset + 1}).empty();
}

void SequentialFile::fetch(Stretch wanted) const
{
#ifdef POSIX_FADV_WILLNEED
    const qint64 end = std::min(wanted.end, size_);
    for (qint64 at = wanted.begin; at < end; at += largest_request) {
        ::posix_fadvise(static_cast<int>(handle_), at, std::min(largest_request, end - at),
                        POSIX_FADV_WILLNEED);
    }
#endif
}

std::vector<Stretch> SequentialFile::absent(Stretch of) const
{
    std::vector<Stretch> found;
#ifdef __linux__
    const auto page = static_cast<qint64>(::sysconf(_SC_PAGESIZE));
    const qint64 begin = of.begin / page * page;
    const qint64 end = std::min(of.end, size_);
    if (begin >= end) {
        return found;
    }
    qint64 at = begin;
    for (const unsigned char in_memory :
         pages_in_memory(static_cast<int>(handle_), {begin, end}, page)) {
        if ((in_memory & 1) != 0) {
            // leaves a gap
        } else if (!found.empty() && found.back().end == at) {
            found.back().end += page;
        } else {
            found.push_back({at, at + page});
        }
        at += page;
    }
#endif
    return found;
}

void SequentialFile::give_back(Stretch unneeded) const
{
#ifdef POSIX_FADV_DONTNEED
    ::posix_fadvise(static_cast<int>(handle_), unneeded.begin, unneeded.end - unneeded.begin,
                    POSIX_FADV_DONTNEED);
#endif
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
