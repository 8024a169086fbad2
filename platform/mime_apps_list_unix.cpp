#include "platform/mime_apps_list_unix.h"

#include <algorithm>

namespace platform {

namespace {

const QByteArray defaults = "[Default Applications]";
const QByteArray removed = "[Removed Associations]";

/// A line "type=first.desktop;second.desktop;".
struct Entry
{
    QByteArray type;
    QList<QByteArray> apps;
};

/// The entry in a line; one without type when the line is of another kind.
Entry parse(const QByteArray& line)
{
    const qsizetype equals = line.indexOf('=');
    if (equals < 0 || line.startsWith('#')) {
        return {};
    }
    Entry entry{line.first(equals).trimmed(), {}};
    for (const QByteArray& app : line.sliced(equals + 1).split(';')) {
        if (const QByteArray name = app.trimmed(); !name.isEmpty()) {
            entry.apps.append(name);
        }
    }
    return entry;
}

QByteArray format(const Entry& entry)
{
    return entry.type + '=' + entry.apps.join(';') + ';';
}

} // namespace

MimeAppsList::MimeAppsList(const QByteArray& content) : lines_(content.split('\n'))
{
    // What follows the last line break is no line when it is empty.
    if (lines_.last().isEmpty()) {
        lines_.removeLast();
    }
}

QByteArray MimeAppsList::content() const
{
    return lines_.isEmpty() ? QByteArray() : lines_.join('\n') + '\n';
}

MimeAppsList::Range MimeAppsList::section(const QByteArray& header) const
{
    const auto is_header = [&](const QByteArray& line) { return line.trimmed() == header; };
    const auto found = std::find_if(lines_.begin(), lines_.end(), is_header);
    if (found == lines_.end()) {
        return {-1, -1};
    }
    const auto begins_next = [](const QByteArray& line) { return line.startsWith('['); };
    const auto end = std::find_if(found + 1, lines_.end(), begins_next);
    return {found + 1 - lines_.begin(), end - lines_.begin()};
}

qsizetype MimeAppsList::find(const Range& range, const QByteArray& type) const
{
    for (qsizetype i = range.begin; i < range.end; ++i) {
        if (parse(lines_[i]).type == type) {
            return i;
        }
    }
    return -1;
}

bool MimeAppsList::has_default(const QByteArray& type) const
{
    const qsizetype found = find(section(defaults), type);
    return found >= 0 && !parse(lines_[found]).apps.isEmpty();
}

void MimeAppsList::set_default(const QByteArray& type, const QByteArray& app)
{
    if (section(defaults).begin < 0) {
        lines_.append(defaults);
    }
    const Range range = section(defaults);
    const qsizetype found = find(range, type);
    if (found < 0) {
        lines_.insert(range.begin, format({type, {app}}));
        return;
    }
    Entry entry = parse(lines_[found]);
    entry.apps.removeAll(app);
    entry.apps.prepend(app);
    lines_[found] = format(entry);
}

void MimeAppsList::remove_default(const QByteArray& type, const QByteArray& app)
{
    const qsizetype found = find(section(defaults), type);
    if (found >= 0 && parse(lines_[found]).apps == QList<QByteArray>{app}) {
        lines_.removeAt(found);
    }
}

void MimeAppsList::drop_empty_defaults()
{
    const Range range = section(defaults);
    if (range.begin >= 0 && range.begin == range.end) {
        lines_.removeAt(range.begin - 1);
    }
}

void MimeAppsList::allow(const QByteArray& app)
{
    remove(section(removed), app);
}

void MimeAppsList::forget(const QByteArray& app)
{
    remove({0, lines_.size()}, app);
}

void MimeAppsList::remove(Range range, const QByteArray& app)
{
    for (qsizetype i = range.end - 1; i >= range.begin; --i) {
        Entry entry = parse(lines_[i]);
        if (entry.apps.removeAll(app) == 0) {
            continue;
        }
        if (entry.apps.isEmpty()) {
            lines_.removeAt(i);
        } else {
            lines_[i] = format(entry);
        }
    }
}

} // namespace platform
