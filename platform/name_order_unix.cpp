#include "platform/name_order.h"

#include <QCollator>

#include <algorithm>
#include <numeric>

namespace platform {

std::vector<qsizetype> name_order(const QStringList& names)
{
    const QCollator collator;
    const bool plain = collator.locale().language() == QLocale::C;
    std::vector<QCollatorSortKey> keys;
    if (!plain) {
        keys.reserve(static_cast<size_t>(names.size()));
        for (const QString& name : names) {
            keys.push_back(collator.sortKey(name));
        }
    }
    std::vector<qsizetype> order(static_cast<size_t>(names.size()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) {
        return plain ? names[a] < names[b]
                     : keys[static_cast<size_t>(a)].compare(keys[static_cast<size_t>(b)]) < 0;
    });
    return order;
}

} // namespace platform
