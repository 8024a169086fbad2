#include "tree/digest_recorder.h"

#include <algorithm>
#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

void DigestRecorder::clear()
{
    digests_.clear();
    directory_.reset();
    checksum_file_.clear();
}

void DigestRecorder::expect(const QString& path)
{
    digests_.insert(path, u""_s);
}

void DigestRecorder::set_directory(const QString& path)
{
    directory_ = path;
}

std::optional<QString> DigestRecorder::take_directory()
{
    return std::exchange(directory_, std::nullopt);
}

void DigestRecorder::set_checksum_file(const QString& path)
{
    checksum_file_ = path;
}

QString DigestRecorder::checksum_file() const
{
    return checksum_file_;
}

void DigestRecorder::record(const QString& path, const QString& digest)
{
    if (is_armed()) {
        digests_.insert(path, digest);
    }
}

bool DigestRecorder::is_armed() const
{
    return !digests_.isEmpty() || directory_ || !checksum_file_.isEmpty();
}

bool DigestRecorder::has_digests() const
{
    return !std::all_of(digests_.begin(), digests_.end(), std::mem_fn(&QString::isEmpty));
}

QMap<QString, QString> DigestRecorder::in_path_order(const Digests& digests)
{
    QMap<QString, QString> sorted;
    for (const auto& [path, digest] : digests.asKeyValueRange()) {
        if (!digest.isEmpty()) {
            sorted.insert(path, digest);
        }
    }
    return sorted;
}
