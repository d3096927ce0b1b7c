#include "recordspan_p.h"

#include <zelkobase/data/recordextent.h>
#include <zelkobase/data/zelko_recorddata.h>

#include <algorithm>
#include <limits>

namespace ZelkoGUI {

using ZELKO_XML::IndexEntry;

namespace {

// A double has no room for the last digits of the largest numbers, and the next one behind them fits no integer.
quint64 truncated(double offset)
{
    constexpr double beyond = 18446744073709551616.0;
    if (!(offset > 0)) {
        return 0;
    }
    return offset >= beyond ? std::numeric_limits<quint64>::max() : static_cast<quint64>(offset);
}

} // namespace

// The lowest position need not be that of the lowest time.
RecordSpan::RecordSpan(const ZELKO_XML::ZELKO_RecordData& record)
    : startTime(ZELKO_XML::recordExtent(record).start)
    , stopTime(ZELKO_XML::recordExtent(record).stop)
    , startOffset(record.GetStartPosition())
    , stopOffset(record.GetStopPosition())
{
    const QVector<IndexEntry>& index = record.GetIndexEntry();
    if (index.size() > 1) {
        const auto [first, last] =
            std::minmax_element(index.begin(), index.end(), [](const IndexEntry& a, const IndexEntry& b) {
                return a.GetRecordOffset() < b.GetRecordOffset();
            });
        startOffset = first->GetRecordOffset();
        stopOffset = last->GetRecordOffset();
    }
}

// Differences of doubles, since a time may lie before the start, and the stop offset below that of the start.
quint64 RecordSpan::offsetAt(quint64 time) const
{
    const auto start = static_cast<double>(startTime);
    const double ratio =
        stopTime > startTime ? (static_cast<double>(time) - start) / (static_cast<double>(stopTime) - start) : 0.0;
    const auto first = static_cast<double>(startOffset);
    return truncated(first + ratio * (static_cast<double>(stopOffset) - first));
}

} // namespace ZelkoGUI
