#include "engine/file_window.h"

#include <algorithm>

namespace engine {

namespace {

constexpr qint64 mebibyte = 0x100000;

// As much as a fast drive delivers in the time that a request takes on a slow one.
constexpr qint64 ahead = 8 * mebibyte;

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

FileWindow::~FileWindow()
{
    give_back(digested_);
}

void FileWindow::move_to(qint64 offset)
{
    digested_ = offset;
    look_ahead();
    const qint64 end = std::min(offset + ahead, file_.size());
    if (asked_ < end) {
        asked_ = std::max(asked_, offset);
        file_.fetch({asked_, end});
        asked_ = end;
    }
    if (digested_ - given_back_ >= give_back_step) {
        give_back(digested_ - give_back_distance);
    }
}

void FileWindow::look_ahead()
{
    if (file_.size() < large || looked_ >= file_.size() ||
        looked_ - digested_ > look_ahead_distance) {
        return;
    }
    const qint64 begin = std::max(looked_, digested_);
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
