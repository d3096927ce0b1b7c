#pragma once

#include <mapwidgets/mapwidgets_export.h>

#include <QString>
#include <QStringList>

/// Ticks on an axis of microseconds since the epoch, at moments that are round in local time, and the texts of moments.
namespace timeticks {

/// The whole number of microseconds nearest to a moment, held within what such a number can be.
MAPWIDGETS_EXPORT long long whole(double moment);

/// The smallest round distance of at least `least`, and at least a microsecond: 1, 2 or 5 units or tens of them below a
/// second, then the divisions of minutes, hours and days that clocks have, then 1, 2 or 5 days or tens of them.
MAPWIDGETS_EXPORT double distance(double least);

/// The first moment at or behind `moment` that is a multiple of `distance` in local time.
MAPWIDGETS_EXPORT double first(double moment, double distance);

/// The multiple behind a multiple; where clocks are changed that is nearer or farther than `distance`.
MAPWIDGETS_EXPORT double next(double tick, double distance);

/// The time of day, as fine as the distance needs; the date at midnight and with days between ticks. The first tick
/// behind a change of the clocks tells the zone as well.
MAPWIDGETS_EXPORT QString text(double moment, double distance);

/// A text as long as any at a distance, within one day or beyond.
MAPWIDGETS_EXPORT QString longestText(double distance, bool isWithinDay);

/// The text of an end of an axis of that extent: as fine as it takes to tell it from the other end, seconds at least.
MAPWIDGETS_EXPORT QString endText(double moment, double extent);

/// Date, time to the microsecond, and zone.
MAPWIDGETS_EXPORT QString dateAndTime(long long moment);

/// The time of day to the microsecond, and shorter texts for where there is less room: milliseconds, seconds.
MAPWIDGETS_EXPORT QStringList timesOfDay(long long moment);

/// Whether both are on the same day.
MAPWIDGETS_EXPORT bool isSameDay(double moment, double other);

/// The dates from `start` to `stop` with their zone, and shorter texts for where there is less room, down to the zone.
MAPWIDGETS_EXPORT QStringList dates(double start, double stop);

} // namespace timeticks
