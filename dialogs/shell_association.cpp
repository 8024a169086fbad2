#include "dialogs/shell_association.h"

#include "platform/association_store.h"
#include "platform/desktop_registration.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

QString class_key(QLatin1StringView path)
{
    return "HKEY_CLASSES_ROOT\\"_L1 + path;
}

} // namespace

namespace shell_association {

void associate(const QString& program_path, const QString& open_verb)
{
    const QString native_path = QDir::toNativeSeparators(program_path);
    const QString icon = native_path + ",0"_L1;
    const QString command = u'"' + native_path + "\" \"%1\""_L1;

    platform::set_default_value(class_key(".md5"_L1), u"Tavrel"_s);
    platform::set_default_value(class_key(".sha1"_L1), u"Tavrel"_s);
    platform::set_default_value(class_key("Tavrel"_L1), u"Checksum hash file"_s);
    platform::set_default_value(class_key("Tavrel\\DefaultIcon"_L1), icon);
    platform::set_default_value(class_key("Tavrel\\shell"_L1), u"open"_s);
    platform::set_default_value(class_key("Tavrel\\shell\\open"_L1), open_verb);
    platform::set_default_value(class_key("Tavrel\\shell\\open\\command"_L1), command);
    platform::set_default_value(class_key("*\\shell\\Tavrel"_L1), u"Tavrel"_s);
    platform::set_default_value(class_key("*\\shell\\Tavrel\\command"_L1), command);
    platform::set_default_value(class_key("Directory\\shell\\Tavrel"_L1), u"Tavrel"_s);
    platform::set_default_value(class_key("Directory\\shell\\Tavrel\\command"_L1), command);

    platform::register_with_desktop(program_path);
}

void dissociate()
{
    platform::set_default_value(class_key(".md5"_L1), u""_s);
    platform::set_default_value(class_key(".sha1"_L1), u""_s);
    // The type itself stays: only a group below it goes, which associate() never makes.
    platform::remove_group(class_key("Tavrel"_L1), u"Tavrel"_s);
    platform::remove_group(class_key("*\\shell"_L1), u"Tavrel"_s);
    platform::remove_group(class_key("Directory\\shell"_L1), u"Tavrel"_s);

    platform::unregister_from_desktop();
}

} // namespace shell_association
