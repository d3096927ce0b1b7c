#include <console/replay/replaybegin.h>

namespace ZelkoConsole {

void ReplayBegin::setExtent(const ZELKO_XML::RecordExtent& extent)
{
    if (extent != m_extent) {
        m_extent = extent;
        m_position = static_cast<double>(extent.start);
    }
}

} // namespace ZelkoConsole
