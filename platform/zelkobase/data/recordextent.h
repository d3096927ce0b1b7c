#pragma once

#include <zelkobase/data/zelkobasedata_export.h>

#include <QtGlobal>

namespace ZELKO_XML {

class ZELKO_RecordData;

/// From when to when a record holds samples, in microseconds since the epoch.
struct RecordExtent
{
    quint64 start;
    quint64 stop;

    friend bool operator==(const RecordExtent&, const RecordExtent&) = default;
};

/// Start and stop time of the record, or the lowest and the highest timestamp of its index, which need not be in order,
/// if that has more than one entry.
ZELKOBASEDATA_EXPORT RecordExtent recordExtent(const ZELKO_RecordData& record);

} // namespace ZELKO_XML
