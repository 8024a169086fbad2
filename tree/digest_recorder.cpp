#include "tree/digest_recorder.h"

using namespace Qt::StringLiterals;

namespace {

// No file has such a path.
const QString directory_key = u"MyTreeWidget_PATH"_s;
const QString checksum_file_key = u"MyTreeWidget_HASH"_s;

} // namespace

void DigestRecorder::expect(const QString& path)
{
    digests_.insert(path, u""_s);
}

void DigestRecorder::set_directory(const QString& path)
{
    digests_.insert(directory_key, path);
}

std::optional<QString> DigestRecorder::take_directory()
{
    const auto found = digests_.find(directory_key);
    if (found == digests_.end()) {
        return std::nullopt;
    }
    const QString path = *found;
    digests_.erase(found);
    return path;
}

void DigestRecorder::set_checksum_file(const QString& path)
{
    digests_.insert(checksum_file_key, path);
}

QString DigestRecorder::checksum_file() const
{
    return digests_.value(checksum_file_key);
}

void DigestRecorder::record(const QString& path, const QString& digest)
{
    if (is_armed()) {
        digests_.insert(path, digest);
    }
}

QMap<QString, QString> DigestRecorder::digested() const
{
    QMap<QString, QString> files = digests_;
    files.remove(directory_key);
    files.remove(checksum_file_key);
    files.removeIf([](const auto& file) { return file.value().isEmpty(); });
    return files;
}
