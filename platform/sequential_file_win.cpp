#include "platform/sequential_file.h"

#include "platform/extended_path_win.h"

#include <qt_windows.h>

#include <fcntl.h>
#include <io.h>

namespace platform {

namespace {

/// A handle of a file on a disk, or INVALID_HANDLE_VALUE.
HANDLE open_handle(const QString& path, DWORD flags, qint64& size)
{
    const QString native = extended_path(path);
    const HANDLE handle =
        CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), GENERIC_READ,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_SEQUENTIAL_SCAN | flags, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return handle;
    }
    LARGE_INTEGER bytes = {};
    if (GetFileType(handle) != FILE_TYPE_DISK || !GetFileSizeEx(handle, &bytes)) {
        CloseHandle(handle);
        return INVALID_HANDLE_VALUE;
    }
    size = bytes.QuadPart;
    return handle;
}

} // namespace

/// The place of the next read, and whether that read is under way: one that finds its bytes in
/// memory is over when it has begun, and that is how memory is told from a drive here.
struct SequentialFile::Pending
{
    OVERLAPPED place = {};
    bool under_way = false;

    void stand_at(qint64 offset)
    {
        ULARGE_INTEGER parts = {};
        parts.QuadPart = static_cast<quint64>(offset);
        place.Offset = parts.LowPart;
        place.OffsetHigh = parts.HighPart;
    }

    qint64 stands_at() const
    {
        ULARGE_INTEGER parts = {};
        parts.LowPart = place.Offset;
        parts.HighPart = place.OffsetHigh;
        return static_cast<qint64>(parts.QuadPart);
    }

    /// Begins a read; answers as read_at_hand().
    qint64 begin(HANDLE file, char* into, qint64 length)
    {
        if (!ReadFile(file, into, static_cast<DWORD>(length), nullptr, &place)) {
            under_way = GetLastError() == ERROR_IO_PENDING;
            return under_way ? would_wait : ended_with(GetLastError());
        }
        return end(file);
    }

    /// Waits for the read that was begun.
    qint64 end(HANDLE file)
    {
        under_way = false;
        DWORD got = 0;
        if (!GetOverlappedResult(file, &place, &got, TRUE)) {
            return ended_with(GetLastError());
        }
        stand_at(stands_at() + got);
        return got;
    }

    static qint64 ended_with(DWORD error) { return error == ERROR_HANDLE_EOF ? 0 : -1; }
};

SequentialFile::SequentialFile() = default;

SequentialFile::~SequentialFile()
{
    if (handle_ == closed) {
        return;
    }
    const auto file = reinterpret_cast<HANDLE>(handle_);
    if (pending_->under_way) {
        // The system would go on writing into memory that is not ours any more.
        CancelIo(file);
        pending_->end(file);
    }
    CloseHandle(file);
}

bool SequentialFile::open(const QString& path)
{
    handle_ = reinterpret_cast<qintptr>(open_handle(path, FILE_FLAG_OVERLAPPED, size_));
    static_assert(closed == -1, "is what INVALID_HANDLE_VALUE is");
    if (handle_ != closed) {
        pending_ = std::make_unique<Pending>();
    }
    return handle_ != closed;
}

void SequentialFile::seek(qint64 offset)
{
    pending_->stand_at(offset);
}

qint64 SequentialFile::read(char* into, qint64 length)
{
    const auto file = reinterpret_cast<HANDLE>(handle_);
    const qint64 got = pending_->under_way ? would_wait : pending_->begin(file, into, length);
    return got == would_wait ? pending_->end(file) : got;
}

qint64 SequentialFile::read_at_hand(char* into, qint64 length)
{
    const qint64 got = pending_->begin(reinterpret_cast<HANDLE>(handle_), into, length);
    return got > 0 || got == would_wait ? got : cannot_tell;
}

// The system reads ahead by itself in a file that is opened for one pass, and tells nobody what it
// holds. What it read for such a pass is the first that it forgets.

bool SequentialFile::is_at_hand(qint64 /*offset*/) const
{
    return true;
}

void SequentialFile::fetch(Stretch /*wanted*/) const
{}

std::vector<Stretch> SequentialFile::absent(Stretch /*of*/) const
{
    return {};
}

void SequentialFile::give_back(Stretch /*unneeded*/) const
{}

bool open_regular(QFile& file, const QString& path)
{
    qint64 size = 0;
    const HANDLE handle = open_handle(path, 0, size);
    if (handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    const int descriptor =
        _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDONLY | _O_BINARY);
    if (descriptor < 0) {
        CloseHandle(handle);
        return false;
    }
    file.setFileName(path);
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        _close(descriptor);
        return false;
    }
    return true;
}

} // namespace platform
