#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <stop_token>
#include <vector>

namespace engine {

/// Checksum files: comment lines that begin with "#", then one line per file made of the digest in
/// hexadecimal, two blanks and the bare file name, as the md5sum and sha1sum programs write and
/// read them. The algorithm is given by the file's extension, ".md5" or ".sha1".

/// One line of a checksum file, its line feed included. A name with a line break is written the way
/// that parse_checksum_line() tells of; no other could be read back.
QString checksum_line(const QString& digest, const QString& name);

/// What one line of a checksum file says.
struct ChecksumEntry
{
    QString digest; ///< as written, case kept
    QString name;
};

/// Reads one line, without its line end. The digest is the leading run of non-blank characters and
/// must be 32 or more hexadecimal digits; the rest, trimmed, is the name, less one leading "*"
/// (the mark of binary mode). A line that begins with a backslash has a name in which "\\", "\n"
/// and "\r" stand for a backslash and line breaks, as md5sum writes it. False for any other line,
/// comments and empty ones included.
bool parse_checksum_line(const QString& line, ChecksumEntry& entry);

/// The files that a checksum file lists, with the digests that it expects of them.
///
/// Made for lists of a million lines: all names stand in one text, all digests in another.
class ExpectedDigests final
{
  public:
    /// Names are taken in this directory.
    explicit ExpectedDigests(const QString& directory);

    /// Adds a line. Call close() after the last one.
    void add(const ChecksumEntry& entry);

    /// Sorts by full path; of several lines for a name the last one counts.
    void close();

    qsizetype size() const { return static_cast<qsizetype>(lines_.size()); }
    bool is_empty() const { return lines_.empty(); }

    /// Full path and digest, as written, of the line at an index; in ascending order of the paths.
    QString path(qsizetype index) const;
    QString digest(qsizetype index) const;

    /// Whether the file of this full path is listed.
    bool contains(const QString& path) const;

  private:
    struct Line
    {
        qsizetype name;
        qsizetype digest;
        int name_size;
        int digest_size;
    };

    QStringView name_of(const Line& line) const;

    QString prefix_;
    QString names_;
    QByteArray digests_;
    std::vector<Line> lines_;
};

/// Reads a whole checksum file; the names are taken in its directory. Lines end at LF or CR LF and
/// the text is in the encoding of the system, unless it begins with the mark of a Unicode encoding.
/// Lines longer than any name could make them are skipped piece by piece, so that a file that is no
/// text costs no memory. Nothing when it cannot be opened, or read to its end, or when the flag is
/// raised meanwhile: what was read until then says nothing of the rest. Safe in any thread.
std::optional<ExpectedDigests> read_checksum_file(const QString& path,
                                                  const std::stop_token& stop = {});

/// Text in the encoding of the system, as checksum files hold it.
QByteArray encode_checksum_text(const QString& text);

/// How an existing file of the name is dealt with.
enum class Replace : bool {
    No,  ///< it stays and the write fails
    Yes, ///< it is replaced once the new one is complete
};

/// Writes a checksum file whole or not at all: the text goes into a file without its name, which it
/// takes once it is complete and, where it replaces an older one, on the medium. False when the
/// file cannot be created or written to its end; nothing is left behind then and an older file
/// stands as it was. Only where the directory takes no new file is an older one, to be replaced,
/// written over in place. Safe in any thread.
bool write_checksum_file(const QString& path, const QString& text, Replace replace);

} // namespace engine
