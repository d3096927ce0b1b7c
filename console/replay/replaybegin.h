#pragma once

#include <zelkobase/data/recordextent.h>

namespace ZelkoConsole {

/// Where the replay of the record that is shown begins: where its own operator has put the position, at first at the
/// start of the record. The position of a channel does not tell that, as all who work with the channel share it. Times
/// are microseconds since the epoch.
class ReplayBegin
{
public:
    /// The extent of the record that is shown, 0 for none. Another one takes the position to its start, as on the bar.
    void setExtent(const ZELKO_XML::RecordExtent& extent);

    /// The operator has put the position there.
    void put(double position) { m_position = position; }

    double position() const { return m_position; }

private:
    ZELKO_XML::RecordExtent m_extent{0, 0};
    double m_position = 0;
};

} // namespace ZelkoConsole
