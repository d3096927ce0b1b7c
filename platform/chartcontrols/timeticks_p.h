#pragma once

#include <QString>

/// Ticks on an axis of microseconds since the epoch, at moments that are round in local time.
namespace timeticks {

/// The smallest round distance of at least `least`: 1, 2 or 5 units or tens of them below a second, then the divisions
/// of minutes, hours and days that clocks have, then days.
double distance(double least);

/// The first moment at or behind `moment` that is a multiple of `distance` in local time.
double first(double moment, double distance);

/// The time of day, as fine as the distance needs; with days between ticks the date.
QString text(double moment, double distance);

} // namespace timeticks
