#include "platform/association_store.h"

#include <QSettings>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace platform {

namespace {

QString store_path()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           "/Brennick/Tavrel-associations.ini"_L1;
}

/// The key as groups of the settings, whose separator is the slash.
QString group_of(QString key)
{
    return key.replace(u'\\', u'/');
}

QString value_of(const QString& key)
{
    return group_of(key) + "/Default"_L1;
}

} // namespace

void set_default_value(const QString& key, const QString& value)
{
    QSettings(store_path(), QSettings::IniFormat).setValue(value_of(key), value);
}

void remove_group(const QString& key, const QString& group)
{
    QSettings(store_path(), QSettings::IniFormat).remove(group_of(key + u'\\' + group));
}

std::optional<QString> default_value(const QString& key)
{
    const QSettings settings(store_path(), QSettings::IniFormat);
    if (!settings.contains(value_of(key))) {
        return {};
    }
    return settings.value(value_of(key)).toString();
}

} // namespace platform
