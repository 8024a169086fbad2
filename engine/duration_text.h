#pragma once

#include <QString>

/// The text of a duration in milliseconds: "01:02:03." from an hour on, "01:02s." from a minute
/// on, else seconds, a point and the last two digits of the millisecond count ("2.05s" for both
/// 2005 and 2105 ms). Hours are not wrapped at 24.
QString format_time(qint64 milliseconds);
