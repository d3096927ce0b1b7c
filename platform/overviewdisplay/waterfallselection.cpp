#include <overviewdisplay/waterfallselection_p.h>

#include <algorithm>
#include <utility>

namespace SPECTRUM_OVERVIEW {

bool WaterfallSelection::set(const std::optional<TimeRange>& range)
{
    const bool isRange = range && range->start < range->stop;
    const std::optional<TimeRange> wanted = isRange ? range : std::nullopt;
    return std::exchange(m_range, wanted) != wanted;
}

void WaterfallSelection::grab(quint64 fixed)
{
    m_before = m_range;
    m_fixed = fixed;
}

bool WaterfallSelection::dragTo(quint64 time)
{
    return m_fixed && set(TimeRange{std::min(*m_fixed, time), std::max(*m_fixed, time)});
}

bool WaterfallSelection::cancel()
{
    const bool wasDragging = isDragging();
    drop();
    return wasDragging && set(m_before);
}

bool WaterfallSelection::contains(quint64 time) const
{
    return m_range && time >= m_range->start && time < m_range->stop;
}

} // namespace SPECTRUM_OVERVIEW
