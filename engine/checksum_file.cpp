#include "engine/checksum_file.h"

#include "engine/line_splitter.h"
#include "platform/new_file.h"
#include "platform/sequential_file.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace engine {

namespace {

// Digest and name of the longest line that can name a file are far shorter. In bytes.
constexpr qsizetype longest_line = 0x10000;

constexpr qint64 block_size = 0x40000;

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

/// Whether a line may be an entry, by its first bytes alone: most lines of a file that is no
/// checksum file need not be decoded.
bool begins_like_entry(QByteArrayView line)
{
    const QByteArrayView digits = line.startsWith('\\') ? line.sliced(1) : line;
    return digits.size() >= shortest_digest &&
           std::all_of(digits.begin(), digits.begin() + shortest_digest,
                       [](char c) { return is_hex_digit(QLatin1Char(c)); });
}

/// Reads the entries out of the blocks of a file.
class Parser
{
  public:
    /// `head` is the beginning of the file, which may bear the mark of an encoding.
    Parser(QByteArrayView head, ExpectedDigests& into)
        : encoding_(QStringConverter::encodingForData(head).value_or(QStringConverter::System)),
          wide_(encoding_ != QStringConverter::System && encoding_ != QStringConverter::Utf8),
          mark_size_(encoding_ == QStringConverter::Utf8 ? 3 : 0), from_wide_(encoding_),
          from_line_(wide_ ? QStringConverter::Utf8 : encoding_, QStringConverter::Flag::Stateless),
          into_(into)
    {}

    void add(QByteArrayView block)
    {
        QByteArray narrow;
        if (wide_) {
            // There a line feed is more than one byte.
            const QString text = from_wide_(block);
            narrow = to_utf8_(text);
            block = narrow;
        }
        lines_.feed(block.sliced(std::exchange(mark_size_, 0)));
        for (QByteArrayView line; lines_.next(line);) {
            add_line(line);
        }
    }

    void end() { add_line(lines_.rest()); }

  private:
    void add_line(QByteArrayView line)
    {
        if (begins_like_entry(line) && parse_checksum_line(from_line_(line), entry_)) {
            into_.add(entry_);
        }
    }

    QStringConverter::Encoding encoding_;
    bool wide_; ///< in UTF-16 or UTF-32
    qsizetype mark_size_;
    QStringDecoder from_wide_;
    QStringEncoder to_utf8_{QStringConverter::Utf8};
    QStringDecoder from_line_;
    LineSplitter lines_{longest_line};
    ChecksumEntry entry_;
    ExpectedDigests& into_;
};

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
    if (prefix_.isEmpty()) {
        prefix_ = directory; // gone meanwhile; its files must not pass for those of the root
    }
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

std::optional<ExpectedDigests> read_checksum_file(const QString& path, const std::stop_token& stop)
{
    platform::SequentialFile file;
    if (!file.open(path)) {
        return std::nullopt;
    }
    ExpectedDigests expected(QFileInfo(path).path());
    std::optional<Parser> parser;
    QByteArray block(block_size, Qt::Uninitialized);
    while (!stop.stop_requested()) {
        const qint64 got = file.read(block.data(), block_size);
        if (got < 0) {
            return std::nullopt;
        }
        const QByteArrayView bytes(block.constData(), got);
        if (!parser) {
            parser.emplace(bytes, expected);
        }
        if (got == 0) {
            parser->end();
            expected.close();
            return expected;
        }
        parser->add(bytes);
    }
    return std::nullopt;
}

QByteArray encode_checksum_text(const QString& text)
{
    return QStringEncoder(QStringConverter::System).encode(text);
}

namespace {

bool write_over(QFile& file, const QByteArray& bytes)
{
    return file.seek(0) && file.write(bytes) == bytes.size() && file.flush() &&
           file.resize(bytes.size());
}

/// For a file that may be written, in a directory that takes no new one to put in its place. When
/// that fails, the file gets back what it held.
bool replace_in_place(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly)) {
        return false;
    }
    const QByteArray before = file.readAll();
    if (file.error() != QFileDevice::NoError || before.size() != file.size()) {
        return false;
    }
    if (write_over(file, bytes)) {
        return true;
    }
    write_over(file, before);
    return false;
}

} // namespace

bool write_checksum_file(const QString& path, const QString& text, Replace replace)
{
    const QByteArray bytes = encode_checksum_text(text);
    if (replace == Replace::No) {
        return platform::write_new_file(path, bytes);
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return replace_in_place(path, bytes);
    }
    // It has the rights of the old file, and none at all when these could not be asked for.
    if (!file.permissions()) {
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }
    // commit() does not hear of an error that befalls it when it empties the buffer itself.
    if (file.write(bytes) != bytes.size() || !file.flush()) {
        file.cancelWriting();
    }
    return file.commit();
}

} // namespace engine
