#pragma once

#include <observerbase/observerbase_export.h>

#include <QDateTime>
#include <QString>

namespace Vorn {

/// Conversions between the times of the recorder, unsigned 64-bit microseconds since the epoch in UTC, and what Qt and
/// people use. All of them are pure functions and may be called on any thread.
class OBSERVERBASE_EXPORT DateTime
{
public:
    /// The moment as `QDateTime` in the local zone, to the millisecond: what lies below is cut off.
    static QDateTime fromMicroseconds(quint64 microseconds);

    /// Whole milliseconds of `time` as microseconds; 0 for an invalid time and for one before the epoch.
    static quint64 toMicroseconds(const QDateTime& time);

    /// `toMicroseconds` under the name that the recorder's own sources use.
    static quint64 QDateTime2TimeStamp(const QDateTime& time) { return toMicroseconds(time); }

    /// Whole seconds of a time or of a length, cut off towards zero; 0 for what is not a number or does not fit.
    static qint64 microsecToSec(double microseconds);

    /// Now, in microseconds.
    static quint64 currentMicroseconds();

    /// The moment in the local zone as "yyyy-MM-dd hh:mm:ss"; an empty text for 0, which means "not known".
    static QString UTCtoLocalString(quint64 microseconds);
};

} // namespace Vorn
