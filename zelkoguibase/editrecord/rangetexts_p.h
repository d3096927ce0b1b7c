#pragma once

#include <QString>

namespace ZelkoGUI {

/// From when to when, in local time, without the dates if both lie on the same day. Microseconds since the epoch.
QString rangeText(quint64 start, quint64 stop);

/// How long that is, as "hh:mm:ss.zzz" with as many hours as there are; "n/a" if the start lies behind the stop.
QString durationText(quint64 start, quint64 stop);

} // namespace ZelkoGUI
