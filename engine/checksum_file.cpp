#include "engine/checksum_file.h"

#include "platform/new_file.h"
#include "platform/sequential_file.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QStringEncoder>
#include <QTextStream>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace engine {

namespace {

// Digest and name of the longest line that can name a file are far shorter.
constexpr qsizetype longest_line = 0x10000;

constexpr qsizetype shortest_digest = 32;

bool is_hex_digit(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

bool is_digest(QStringView word)
{
    return word.size() >= shortest_digest && std::all_of(word.begin(), word.end(), is_hex_digit);
}

bool has_line_break(const QString& name)
{
    return name.contains(u'\n') || name.contains(u'\r');
}

QString escaped(QString name)
{
    return name.replace(u'\\', "\\\\"_L1).replace(u'\n', "\\n"_L1).replace(u'\r', "\\r"_L1);
}

/// The name that an escaped one stands for; nothing when it is none.
std::optional<QString> unescaped(QStringView text)
{
    QString name;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\\') {
            name += text[i];
            continue;
        }
        const QChar code = ++i < text.size() ? text[i] : QChar();
        if (code != u'\\' && code != u'n' && code != u'r') {
            return std::nullopt;
        }
        name += code == u'n' ? u'\n' : code == u'r' ? u'\r' : u'\\';
    }
    return name;
}

/// Reads the next line that is no longer than a line can be; false at the end.
bool read_line(QTextStream& stream, QString& line, const StopFlag& stop)
{
    bool skipping = false;
    while (!stop_requested(stop) && stream.readLineInto(&line, longest_line + 1)) {
        const bool piece = line.size() > longest_line;
        if (!piece && !skipping) {
            return true;
        }
        skipping = piece;
    }
    return false;
}

} // namespace

QString checksum_line(const QString& digest, const QString& name)
{
    const QString line = digest.toLower() + u"  "_s;
    return has_line_break(name) ? u'\\' + line + escaped(name) + u'\n' : line + name + u'\n';
}

bool parse_checksum_line(const QString& line, ChecksumEntry& entry)
{
    const auto is_blank = [](QChar c) { return c.isSpace(); };
    const bool is_escaped = line.startsWith(u'\\');
    const auto begin = line.begin() + (is_escaped ? 1 : 0);
    const auto blank = std::find_if(begin, line.end(), is_blank);
    const QStringView digest(begin, blank);
    if (!is_digest(digest)) {
        return false;
    }
    QStringView name = QStringView(blank, line.end()).trimmed();
    if (name.startsWith(u'*')) {
        name = name.sliced(1);
    }
    const std::optional<QString> plain = is_escaped ? unescaped(name) : name.toString();
    entry = {digest.toString(), plain.value_or(QString())};
    return plain.has_value();
}

ExpectedDigests::ExpectedDigests(const QString& directory)
    : prefix_(QFileInfo(directory).canonicalFilePath())
{
    if (!prefix_.endsWith(u'/')) {
        prefix_ += u'/';
    }
}

void ExpectedDigests::add(const ChecksumEntry& entry)
{
    lines_.push_back({names_.size(), digests_.size(), static_cast<int>(entry.name.size()),
                      static_cast<int>(entry.digest.size())});
    names_ += entry.name;
    digests_ += entry.digest.toLatin1();
}

QStringView ExpectedDigests::name_of(const Line& line) const
{
    return QStringView(names_).sliced(line.name, line.name_size);
}

void ExpectedDigests::close()
{
    // The last of each name first, so that it is the one that stays.
    std::reverse(lines_.begin(), lines_.end());
    std::stable_sort(lines_.begin(), lines_.end(), [this](const Line& a, const Line& b) {
        return name_of(a).compare(name_of(b)) < 0;
    });
    const auto same = [this](const Line& a, const Line& b) { return name_of(a) == name_of(b); };
    lines_.erase(std::unique(lines_.begin(), lines_.end(), same), lines_.end());
}

QString ExpectedDigests::path(qsizetype index) const
{
    return prefix_ + name_of(lines_[static_cast<size_t>(index)]).toString();
}

QString ExpectedDigests::digest(qsizetype index) const
{
    const Line& line = lines_[static_cast<size_t>(index)];
    return QString::fromLatin1(digests_.constData() + line.digest, line.digest_size);
}

bool ExpectedDigests::contains(const QString& path) const
{
    if (!path.startsWith(prefix_)) {
        return false;
    }
    const QStringView name = QStringView(path).sliced(prefix_.size());
    const auto found = std::lower_bound(
        lines_.begin(), lines_.end(), name,
        [this](const Line& line, QStringView wanted) { return name_of(line).compare(wanted) < 0; });
    return found != lines_.end() && name_of(*found) == name;
}

std::optional<ExpectedDigests> read_checksum_file(const QString& path, const StopFlag& stop)
{
    QFile file;
    if (!platform::open_regular(file, path)) {
        return std::nullopt;
    }
    ExpectedDigests expected(QFileInfo(path).path());
    QTextStream stream(&file);
    stream.setEncoding(QStringConverter::System);
    ChecksumEntry entry;
    QString line;
    while (read_line(stream, line, stop)) {
        if (parse_checksum_line(line, entry)) {
            expected.add(entry);
        }
    }
    if (file.error() != QFileDevice::NoError) {
        return std::nullopt;
    }
    expected.close();
    return expected;
}

QByteArray encode_checksum_text(const QString& text)
{
    return QStringEncoder(QStringConverter::System).encode(text);
}

bool write_checksum_file(const QString& path, const QString& text, Replace replace)
{
    const QByteArray bytes = encode_checksum_text(text);
    if (replace == Replace::No) {
        return platform::write_new_file(path, bytes);
    }
    QSaveFile file(path);
    // A file that may be written stands for itself where its directory takes no new one.
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    // commit() does not hear of an error that befalls it when it empties the buffer itself.
    if (file.write(bytes) != bytes.size() || !file.flush()) {
        file.cancelWriting();
    }
    return file.commit();
}

} // namespace engine
