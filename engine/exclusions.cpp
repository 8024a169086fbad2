#include "engine/exclusions.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace engine {

QStringList parse_exclusions(const QString& text)
{
    QStringList suffixes = text.split(u';', Qt::SkipEmptyParts);
    suffixes.replaceInStrings(u"*."_s, QString());
    return suffixes;
}

QString format_exclusions(const QStringList& suffixes)
{
    QStringList entries;
    entries.reserve(suffixes.size());
    for (const QString& suffix : suffixes) {
        entries.append(u"*."_s + suffix);
    }
    return entries.join(u';');
}

bool is_excluded(const QStringList& suffixes, const QString& path)
{
    return !suffixes.isEmpty() && suffixes.contains(QFileInfo(path).suffix(), Qt::CaseInsensitive);
}

void exclude_checksum_files(QStringList& suffixes)
{
    suffixes << u"sha1"_s << u"md5"_s;
}

void include_checksum_files(QStringList& suffixes)
{
    suffixes.removeOne(u"sha1"_s);
    suffixes.removeOne(u"md5"_s);
}

} // namespace engine
