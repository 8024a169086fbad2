#include "engine/duration_text.h"

using namespace Qt::StringLiterals;

QString format_time(qint64 milliseconds)
{
    const auto seconds = static_cast<qint32>(milliseconds / 1000);
    const qint32 h = seconds / 3600;
    const qint32 m = (seconds / 60) % 60;
    const qint32 s = seconds % 60;
    constexpr QChar zero = u'0';
    if (h > 0) {
        return u"%1:%2:%3."_s.arg(h, 2, 10, zero).arg(m, 2, 10, zero).arg(s, 2, 10, zero);
    }
    if (m > 0) {
        return u"%1:%2s."_s.arg(m, 2, 10, zero).arg(s, 2, 10, zero);
    }
    return u"%1.%2s"_s.arg(s, 1, 10, zero).arg(milliseconds % 100, 2, 10, zero);
}
