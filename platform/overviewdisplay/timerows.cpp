#include <overviewdisplay/timerows_p.h>

#include <algorithm>
#include <cmath>

namespace SPECTRUM_OVERVIEW {
namespace {

constexpr double shortest = 100;   // microseconds
constexpr double longest = 4.6e18; // the sum of a time and such a length is still a number

// Where this ends there are no dates any more.
constexpr quint64 lastTime = 9'200'000'000'000'000'000U;

} // namespace

// Whole parts and the rest apart, since the product of both numbers may be too large for one.
quint64 TimeRows::timeOf(int row) const
{
    const auto count = static_cast<quint64>(rows);
    const auto number = static_cast<quint64>(std::clamp(row, 0, rows));
    return range.start + extent() / count * number + extent() % count * number / count;
}

int TimeRows::firstRowFrom(quint64 time) const
{
    int low = 0;
    for (int high = rows; low < high;) {
        const int middle = low + (high - low) / 2;
        if (timeOf(middle) < time) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

int TimeRows::rowAt(quint64 time) const
{
    if (time >= range.stop) {
        return rows - 1;
    }
    return std::clamp(firstRowFrom(time + 1) - 1, 0, rows - 1);
}

double TimeRows::placeOf(quint64 time) const
{
    const bool isBefore = time < range.start;
    const auto away = static_cast<double>(isBefore ? range.start - time : time - range.start);
    return (isBefore ? -away : away) / static_cast<double>(extent()) * rows;
}

long long heldTime(quint64 time)
{
    return static_cast<long long>(std::min(time, lastTime));
}

TimeRange zoomed(const TimeRange& range, quint64 centre, double factor)
{
    const auto extent = static_cast<double>(range.stop - range.start);
    const auto length = static_cast<quint64>(std::clamp(extent * factor, shortest, longest));
    const quint64 inside = std::clamp(centre, range.start, range.stop);
    const double share = static_cast<double>(inside - range.start) / extent;
    const auto before = static_cast<quint64>(share * static_cast<double>(length));
    const quint64 start = inside - std::min(before, inside);
    return {start, std::min(start, ~quint64(0) - length) + length};
}

TimeRange moved(const TimeRange& range, double lengths)
{
    const quint64 extent = range.stop - range.start;
    const auto way = static_cast<quint64>(std::min(std::abs(lengths) * static_cast<double>(extent), longest));
    if (lengths < 0) {
        const quint64 start = range.start - std::min(way, range.start);
        return {start, start + extent};
    }
    const quint64 room = range.stop < lastTime ? lastTime - range.stop : 0;
    return {range.start + std::min(way, room), range.stop + std::min(way, room)};
}

} // namespace SPECTRUM_OVERVIEW
