#pragma once

#include <overviewdisplay/waterfallview.h>

namespace SPECTRUM_OVERVIEW {

/// How much finer one step of a zoom is.
inline constexpr double zoomStep = 2;

/// A range of time laid on the rows of a picture, exact to the microsecond: each row has the times from its own to that
/// of the next one.
struct TimeRows
{
    TimeRange range;
    int rows = 0; ///< at least 1 where it is asked for

    quint64 extent() const { return range.stop - range.start; }

    /// When a row begins; that of the row behind the last is the end of the range.
    quint64 timeOf(int row) const;

    /// The row in which a time lies, held within the rows. Of several that begin at the same time, the last.
    int rowAt(quint64 time) const;

    /// The first row that begins at this time or later; `rows` if none does.
    int firstRowFrom(quint64 time) const;

    /// The place of a time between the edges of rows, also of one outside.
    double placeOf(quint64 time) const;
};

/// As the texts of times take it: what is too large for a date is the last one.
long long heldTime(quint64 time);

/// The range, `factor` times as long, in which `centre` keeps its place; held within what a time can be, and never
/// shorter than a tenth of a millisecond.
TimeRange zoomed(const TimeRange& range, quint64 centre, double factor);

/// The range moved by so many times its length, and not beyond what a time can be.
TimeRange moved(const TimeRange& range, double lengths);

} // namespace SPECTRUM_OVERVIEW
