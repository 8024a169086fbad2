#include "engine/checksum_file.h"

#include <QDir>
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

constexpr qint64 chunk_characters = 0x4000;

constexpr qsizetype shortest_digest = 32;

bool is_hex_digit(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

bool is_digest(QStringView word)
{
    return word.size() >= shortest_digest && std::all_of(word.begin(), word.end(), is_hex_digit);
}

/// Splits decoded text into lines and drops those that are too long to be kept in memory.
class LineReader
{
  public:
    explicit LineReader(QIODevice& device) : stream_(&device)
    {
        stream_.setEncoding(QStringConverter::System);
    }

    bool next(QString& line)
    {
        line.clear();
        bool whole = true;
        while (fill()) {
            const qsizetype end = chunk_.indexOf(u'\n', position_);
            const qsizetype stop = end < 0 ? chunk_.size() : end;
            whole = whole && line.size() + stop - position_ <= longest_line;
            if (whole) {
                line += QStringView(chunk_).sliced(position_, stop - position_);
            }
            position_ = end < 0 ? stop : stop + 1;
            if (end >= 0 && whole) {
                strip_carriage_return(line);
                return true;
            }
            if (end >= 0) {
                line.clear();
                whole = true;
            }
        }
        return whole && !line.isEmpty();
    }

  private:
    bool fill()
    {
        if (position_ == chunk_.size()) {
            chunk_ = stream_.read(chunk_characters);
            position_ = 0;
        }
        return !chunk_.isEmpty();
    }

    static void strip_carriage_return(QString& line)
    {
        if (line.endsWith(u'\r')) {
            line.chop(1);
        }
    }

    QTextStream stream_;
    QString chunk_;
    qsizetype position_ = 0;
};

} // namespace

QString checksum_line(const QString& digest, const QString& name)
{
    return digest.toLower() + u"  "_s + name + u'\n';
}

bool parse_checksum_line(const QString& line, ChecksumEntry& entry)
{
    const auto is_blank = [](QChar c) { return c.isSpace(); };
    const auto blank = std::find_if(line.begin(), line.end(), is_blank);
    const QStringView digest(line.begin(), blank);
    if (!is_digest(digest)) {
        return false;
    }
    QStringView name = QStringView(blank, line.end()).trimmed();
    if (name.startsWith(u'*')) {
        name = name.sliced(1);
    }
    entry = {digest.toString(), name.toString()};
    return true;
}

QMap<QString, QString> read_checksum_file(QIODevice& device, const QString& directory)
{
    QString prefix = QFileInfo(directory).canonicalFilePath();
    if (!prefix.endsWith(u'/')) {
        prefix += u'/';
    }
    QMap<QString, QString> digests;
    ChecksumEntry entry;
    QString line;
    for (LineReader reader(device); reader.next(line);) {
        if (parse_checksum_line(line, entry)) {
            digests.insert(prefix + entry.name, entry.digest);
        }
    }
    return digests;
}

QByteArray encode_checksum_text(const QString& text)
{
    return QStringEncoder(QStringConverter::System).encode(text);
}

bool write_checksum_file(const QString& path, const QString& text, Replace replace)
{
    QSaveFile file(path);
    // A file that may be written stands for itself where its directory takes no new one.
    file.setDirectWriteFallback(replace == Replace::Yes);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    // commit() does not hear of an error that befalls it when it empties the buffer itself.
    const QByteArray bytes = encode_checksum_text(text);
    const bool whole = file.write(bytes) == bytes.size() && file.flush();
    if (!whole || (replace == Replace::No && QFileInfo::exists(path))) {
        file.cancelWriting();
    }
    return file.commit();
}

} // namespace engine
