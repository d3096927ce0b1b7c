#pragma once

#include "fixedrecordmodel.h"
#include "testrecords.h"

#include <QStringList>

/// Two records that differ in every column of the record list, R1 and R2.
namespace differentrecords {

inline FixedRecordModel::RecordDataPtr airband()
{
    using Record = ZELKO_XML::ZELKO_RecordData;
    auto record = makeRecord(QStringLiteral("R1"), static_cast<int>(Record::RecordStatus::Finished), 2 * 1048576);
    record->SetRecordName(QStringLiteral("Airband"));
    record->SetStartTime(1714550400000000); // 1 May 2024, 10:00 in Berlin
    record->SetStopTime(1714550410500000);
    record->SetDataRate(Record::DataRate::UpTo1MB);
    record->SetDataFormat(Record::DataFormat::IQ16);
    record->SetDeletable(true);
    record->SetInterface(Record::Interface::Ethernet);
    ZELKO_XML::IndexEntry entry;
    entry.SetTunerFrequency(118'100'000);
    entry.SetBandwidth(25'000);
    entry.SetSampleRate(48'000);
    record->AppendIndexEntry(entry);
    return record;
}

inline FixedRecordModel::RecordDataPtr beacon()
{
    using Record = ZELKO_XML::ZELKO_RecordData;
    auto record =
        makeRecord(QStringLiteral("R2"), static_cast<int>(Record::RecordStatus::Recording), 5 * 1073741824ULL);
    record->SetRecordName(QStringLiteral("Beacon"));
    record->SetStartTime(1718013600000000); // 10 June 2024, 12:00 in Berlin
    record->SetStopTime(1718107200000000);  // 11 June, 14:00; a day falls away from the duration
    record->SetDataRate(Record::DataRate::RawStream);
    record->SetDataFormat(Record::DataFormat::Audio16);
    record->SetInterface(Record::Interface::Usb);
    ZELKO_XML::IndexEntry entry;
    entry.SetTunerFrequency(2'400'000'000);
    entry.SetBandwidth(20'000'000);
    entry.SetSampleRate(25'000'000);
    record->AppendIndexEntry(entry);
    return record;
}

inline FixedRecordModel::Rows twoRecords()
{
    return {{QStringLiteral("R1"), airband()}, {QStringLiteral("R2"), beacon()}};
}

inline QStringList both()
{
    return {QStringLiteral("R1"), QStringLiteral("R2")};
}

} // namespace differentrecords
