#pragma once

#include <overviewdisplay/waterfallview.h>

namespace SPECTRUM_OVERVIEW {

/// The selected range of time, and the drag of the mouse that is changing it. Each function tells whether the range is
/// another one than before.
class WaterfallSelection
{
public:
    const std::optional<TimeRange>& range() const { return m_range; }

    /// Without extent it is no range.
    bool set(const std::optional<TimeRange>& range);

    /// A drag with one end of the range there, which stays. The other follows; in the same place as the first it is
    /// none.
    void grab(quint64 fixed);
    bool isDragging() const { return m_fixed.has_value(); }
    bool dragTo(quint64 time);
    void drop() { m_fixed.reset(); }

    /// Back to what there was before the drag.
    bool cancel();

    bool contains(quint64 time) const;

private:
    std::optional<TimeRange> m_range;
    std::optional<TimeRange> m_before;
    std::optional<quint64> m_fixed;
};

} // namespace SPECTRUM_OVERVIEW
