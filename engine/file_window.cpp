#include "engine/file_window.h"

#include <algorithm>

namespace engine {

namespace {

constexpr qint64 mebibyte = 0x100000;

constexpr qint64 block_size = 0x40000;

// As much as a fast drive delivers in the time that a request takes on a slow one.
constexpr qint64 farthest = 8 * mebibyte;

// What is in memory is looked at in large steps and long before anybody, the system included, reads
// there: what was fetched for this very reader must not pass for what was there before.
constexpr qint64 look_step = 64 * mebibyte;
constexpr qint64 look_ahead_distance = 32 * mebibyte;

// Giving back has a price of its own, hardly felt when it is done for many pages at a time. The
// pages that were read last may still be on their way into the system's lists.
constexpr qint64 give_back_step = 16 * mebibyte;
constexpr qint64 give_back_distance = 2 * mebibyte;

// Files below this size stay in memory: somebody may well read them again.
constexpr qint64 large = 64 * mebibyte;

} // namespace

FileWindow::FileWindow(const QString& path) : block_(block_size, Qt::Uninitialized)
{
    // A file that is gone has no size, and so nothing is read.
    file_.open(path);
}

FileWindow::~FileWindow()
{
    give_back(reader_);
}

void FileWindow::move_to(qint64 offset)
{
    reader_ = offset;
    look_ahead();
    if (ahead_ < reader_) {
        ahead_ = reader_;
        file_.seek(ahead_);
    }
    if (reader_ - given_back_ >= give_back_step) {
        give_back(reader_ - give_back_distance);
    }
}

bool FileWindow::read_on()
{
    const qint64 end = std::min(reader_ + farthest, file_.size());
    if (ahead_ >= end) {
        return false;
    }
    // Reading, and not only asking the system to fetch: it then goes ahead by itself, in the large
    // pieces that drives like best.
    const qint64 got = file_.read(block_.data(), block_size);
    ahead_ = got > 0 ? ahead_ + got : file_.size();
    return ahead_ < end;
}

void FileWindow::look_ahead()
{
    if (file_.size() < large || looked_ >= file_.size() ||
        looked_ - reader_ > look_ahead_distance) {
        return;
    }
    const qint64 begin = std::max(looked_, reader_);
    looked_ = begin + look_step;
    const std::vector<platform::Stretch> found = file_.absent({begin, looked_});
    absent_.insert(absent_.end(), found.begin(), found.end());
}

void FileWindow::give_back(qint64 until)
{
    given_back_ = until;
    auto stretch = absent_.begin();
    while (stretch != absent_.end() && stretch->end <= until) {
        file_.give_back(*stretch++);
    }
    if (stretch != absent_.end() && stretch->begin < until) {
        file_.give_back({stretch->begin, until});
        stretch->begin = until;
    }
    absent_.erase(absent_.begin(), stretch);
}

} // namespace engine
