#include "platform/association_store.h"

#include <QSettings>

using namespace Qt::StringLiterals;

namespace platform {

void set_default_value(const QString& key, const QString& value)
{
    QSettings(key, QSettings::NativeFormat).setValue(u"Default"_s, value);
}

void remove_group(const QString& key, const QString& group)
{
    QSettings settings(key, QSettings::NativeFormat);
    settings.beginGroup(group);
    settings.remove(QString());
}

std::optional<QString> default_value(const QString& key)
{
    const QSettings settings(key, QSettings::NativeFormat);
    if (!settings.contains(u"Default"_s)) {
        return {};
    }
    return settings.value(u"Default"_s).toString();
}

} // namespace platform
