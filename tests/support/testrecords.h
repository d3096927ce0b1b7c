#pragma once

#include "recordbegin.h"

#include <zelkobase/data/zelko_recorddata.h>

#include <memory>

/// A record at rest; `status` is its number.
inline std::shared_ptr<ZELKO_XML::ZELKO_RecordData> makeRecord(const QString& id, int status = 5, quint64 size = 0)
{
    auto record = std::make_shared<ZELKO_XML::ZELKO_RecordData>();
    record->SetRecordID(id);
    record->SetRecordName(QStringLiteral("name of ") + id);
    record->SetStartTime(recordBegin);
    record->SetStopTime(recordBegin + 90'000'000);
    record->SetSize(size);
    record->SetRecordStatus(static_cast<ZELKO_XML::ZELKO_RecordData::RecordStatus>(status));
    return record;
}

/// A record at rest that is deletable, or not.
inline std::shared_ptr<ZELKO_XML::ZELKO_RecordData> makeDeletable(const QString& id, bool deletable)
{
    auto record = makeRecord(id);
    record->SetDeletable(deletable);
    return record;
}
