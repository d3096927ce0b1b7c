#include <zelkobase/data/recordextent.h>

#include <zelkobase/data/zelko_recorddata.h>

#include <algorithm>

namespace ZELKO_XML {

RecordExtent recordExtent(const ZELKO_RecordData& record)
{
    const QVector<IndexEntry>& index = record.GetIndexEntry();
    if (index.size() < 2) {
        return {record.GetStartTime(), record.GetStopTime()};
    }
    const auto [first, last] =
        std::minmax_element(index.begin(), index.end(), [](const IndexEntry& a, const IndexEntry& b) {
            return a.GetTimestamp() < b.GetTimestamp();
        });
    return {first->GetTimestamp(), last->GetTimestamp()};
}

} // namespace ZELKO_XML
