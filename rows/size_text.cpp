#include "rows/size_text.h"

#include <QCoreApplication>

#include <QtMath>

namespace {

constexpr qint64 kilo = 1024;
constexpr qint64 mega = 1024 * kilo;
constexpr qint64 giga = 1024 * mega;

QString count_of(qint64 bytes, qint64 unit)
{
    return QString::number(
        qRound64(static_cast<double>(bytes) * (1.0 / static_cast<double>(unit))));
}

} // namespace

QString format_size(qint64 bytes)
{
    if (bytes < 1000) {
        return u'1' + QCoreApplication::translate("MyTreeWidget", " Ko");
    }
    if (bytes < 1000 * kilo) {
        return count_of(bytes, kilo) + QCoreApplication::translate("MyTreeWidget", " Ko");
    }
    if (bytes < 1000 * mega) {
        return count_of(bytes, mega) + QCoreApplication::translate("MyTreeWidget", " Mo");
    }
    if (bytes < 1000 * giga) {
        return count_of(bytes, giga) + QCoreApplication::translate("MyTreeWidget", " Go");
    }
    return QCoreApplication::translate("MyTreeWidget", "Trop Gros");
}
