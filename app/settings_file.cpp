#include "app/settings_file.h"

#include "engine/product.h"

#include <QCoreApplication>
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

QString local_path()
{
    return u"Tavrel.ini"_s;
}

// Not by the application's identity, which is not yet set when the language is read.
QString user_folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' +
           QString::fromLatin1(product::organization);
}

QString user_path()
{
    return user_folder() + u'/' + local_path();
}

/// What an installation wishes for a first start. Only the one for Windows brings such a file.
QString installed_path()
{
    return QCoreApplication::applicationDirPath() + u"/first-start.ini"_s;
}

/// The settings are written into a new file, which then takes the name of the old one.
bool can_write_here()
{
    QFile file(local_path());
    return can_create_files_here() && (!file.exists() || file.open(QIODevice::ReadWrite));
}

} // namespace

QString settings_path_to_read()
{
    const bool local =
        can_write_here() || (QFileInfo::exists(local_path()) && !QFileInfo::exists(user_path()));
    const QString path = local ? local_path() : user_path();
    const bool first_start = !QFileInfo::exists(path) && QFileInfo::exists(installed_path());
    return first_start ? installed_path() : path;
}

QString settings_path_to_write()
{
    if (can_write_here()) {
        return local_path();
    }
    QDir().mkpath(user_folder());
    // Not every save writes every key: what the file here says of the others goes on counting.
    if (QFile::copy(local_path(), user_path())) {
        QFile::setPermissions(user_path(), QFile::ReadOwner | QFile::WriteOwner);
    }
    return user_path();
}
