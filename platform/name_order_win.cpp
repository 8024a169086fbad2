#include "platform/name_order.h"

#include <QByteArray>

#include <qt_windows.h>

#include <algorithm>
#include <numeric>

namespace platform {

namespace {

/// The system's own key: QCollator would compare its bytes in pairs, the second one first.
QByteArray sort_key(const QString& name)
{
    const auto map = [&](char* key, int length) {
        return LCMapStringEx(LOCALE_NAME_USER_DEFAULT, LCMAP_SORTKEY,
                             reinterpret_cast<const wchar_t*>(name.utf16()),
                             static_cast<int>(name.size()), reinterpret_cast<wchar_t*>(key), length,
                             nullptr, nullptr, 0);
    };
    QByteArray key(map(nullptr, 0), Qt::Uninitialized);
    map(key.data(), static_cast<int>(key.size()));
    return key;
}

} // namespace

std::vector<qsizetype> name_order(const QStringList& names)
{
    std::vector<QByteArray> keys;
    keys.reserve(static_cast<size_t>(names.size()));
    for (const QString& name : names) {
        keys.push_back(sort_key(name));
    }
    std::vector<qsizetype> order(static_cast<size_t>(names.size()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) {
        return keys[static_cast<size_t>(a)] < keys[static_cast<size_t>(b)];
    });
    return order;
}

} // namespace platform
