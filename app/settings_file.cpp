#include "app/settings_file.h"

#include "engine/product.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

using namespace Qt::StringLiterals;

namespace {

/// Tries instead of asking: permissions do not tell of a read-only medium or of a special
/// directory, and to an administrator everything looks writable.
bool can_create_files_here()
{
    QTemporaryFile probe(QDir::current().filePath(u"Tavrel-XXXXXX.tmp"_s));
    return probe.open();
}

} // namespace

QString settings_path()
{
    const QString name = u"Tavrel.ini"_s;
    if (QFileInfo::exists(name) || can_create_files_here()) {
        return name;
    }
    // Not by the application's identity, which is not yet set when the language is read.
    QDir folder(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    const QString organization = QString::fromLatin1(product::organization);
    folder.mkpath(organization);
    return folder.filePath(organization + u'/' + name);
}
