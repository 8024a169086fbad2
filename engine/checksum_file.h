#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QMap>
#include <QString>
#include <QStringConverter>

namespace engine {

/// Checksum files: comment lines that begin with "#", then one line per file made of the digest in
/// hexadecimal, two blanks and the bare file name, as the md5sum and sha1sum programs write and
/// read them. The algorithm is given by the file's extension, ".md5" or ".sha1".

/// One line of a checksum file, its line feed included.
QString checksum_line(const QString& digest, const QString& name);

/// What one line of a checksum file says.
struct ChecksumEntry
{
    QString digest; ///< as written, case kept
    QString name;
};

/// Reads one line, without its line end. The digest is the leading run of non-blank characters and
/// must be 32 or more hexadecimal digits; the rest, trimmed, is the name, less one leading "*"
/// (the mark of binary mode). False for any other line, comments and empty ones included.
bool parse_checksum_line(const QString& line, ChecksumEntry& entry);

/// Reads a whole checksum file: full path to digest, the names taken in `directory`. A later line
/// for a name replaces an earlier one. `device` is open for reading; lines end at LF or CR LF and
/// the text is in the encoding of the system. Lines longer than any name could make them are
/// skipped piece by piece, so that a file that is no text costs no memory.
QMap<QString, QString> read_checksum_file(QIODevice& device, const QString& directory);

/// Text in the encoding of the system, as checksum files hold it.
QByteArray encode_checksum_text(const QString& text);

/// How an existing file of the name is dealt with.
enum class Replace : bool {
    No,  ///< it stays and the write fails
    Yes, ///< it is replaced once the new one is complete
};

/// Writes a checksum file whole or not at all: the text goes into a file beside it, which takes its
/// name only once everything is on its way to the medium. False when the file cannot be created or
/// written to its end; nothing is left behind then and an older file stands as it was. Only where
/// the directory takes no new file is an older one, to be replaced, written over in place.
bool write_checksum_file(const QString& path, const QString& text, Replace replace);

} // namespace engine
