#include "tree/copy_text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

qsizetype widest(const QList<CopyRow>& rows, QString CopyRow::*field)
{
    qsizetype width = 0;
    for (const CopyRow& row : rows) {
        width = std::max(width, (row.*field).size());
    }
    return width;
}

} // namespace

QString copy_text(const QList<CopyRow>& rows, const CopyOptions& options)
{
    const qsizetype name_width = widest(rows, &CopyRow::name);
    const qsizetype size_width = widest(rows, &CopyRow::size);
    const qsizetype path_width = widest(rows, &CopyRow::path);
    const bool details = options.name || options.size || options.path;
    QString text;
    for (const CopyRow& row : rows) {
        if (!row.checksum.isEmpty()) {
            text += row.checksum + u'\t';
        }
        if (options.path) {
            text += row.path.leftJustified(path_width) + u'\t';
        }
        if (options.name) {
            text += row.name.leftJustified(name_width) + u'\t';
        }
        if (options.size) {
            text += row.size.rightJustified(size_width) + u'\t';
        }
        if (details || !row.checksum.isEmpty()) {
            text += u'\n';
        }
    }
    return text.replace("\t\n"_L1, "\n"_L1);
}
