#pragma once

#include "testrecords.h"

/// A record at rest of 90 seconds, with 10,000 bytes each from the position 1,000 on.
inline std::shared_ptr<ZELKO_XML::ZELKO_RecordData> makeCopyable(const QString& id = QStringLiteral("R"))
{
    const auto record = makeRecord(id);
    record->SetStartPosition(1'000);
    record->SetStopPosition(901'000);
    return record;
}

inline ZELKO_XML::IndexEntry makeIndexEntry(quint64 time, quint64 offset)
{
    ZELKO_XML::IndexEntry entry;
    entry.SetTimestamp(time);
    entry.SetRecordOffset(offset);
    return entry;
}
