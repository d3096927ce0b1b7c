#include <zelkobase/service/corbametadataconverter.h>

#include <zelkobase/orb/corbatext.h>

#include <zelkoidl/recorderservice.hh>

#include <algorithm>

namespace ZelkoCommon {
namespace {

using Record = ZELKO_XML::ZELKO_RecordData;

static_assert(static_cast<int>(Record::DataRate::Variable) == QD_ZLK::RATE_VARIABLE);
static_assert(static_cast<int>(Record::DataFormat::Other) == QD_ZLK::FORMAT_OTHER);
static_assert(static_cast<int>(Record::RecordStatus::Damaged) == QD_ZLK::KIND_DAMAGED);

quint64 notNegative(CORBA::LongLong number)
{
    return static_cast<quint64>(std::max<CORBA::LongLong>(number, 0));
}

ZELKO_XML::BookmarkEntry read(const QD_ZLK::RecordBookmark& bookmark)
{
    ZELKO_XML::BookmarkEntry entry;
    entry.SetTimestamp(notNegative(bookmark.position));
    entry.SetBookmark(fromCorba(bookmark.text.in()));
    return entry;
}

ZELKO_XML::HistoryEntry read(const QD_ZLK::RecordHistoryEntry& history)
{
    ZELKO_XML::HistoryEntry entry;
    entry.SetTimestamp(notNegative(history.entryKey));
    entry.SetHistoryEntry(fromCorba(history.text.in()));
    return entry;
}

ZELKO_XML::IndexEntry read(const QD_ZLK::RecordIndexEntry& index)
{
    ZELKO_XML::IndexEntry entry;
    entry.SetTimestamp(notNegative(index.timestamp));
    entry.SetRecordOffset(notNegative(index.recordOffset));
    entry.SetTunerFrequency(notNegative(index.tunerFrequency));
    entry.SetSampleRate(notNegative(index.sampleRate));
    entry.SetBandwidth(notNegative(index.bandwidth));
    return entry;
}

template <typename Entry, typename Sequence>
QVector<Entry> readAll(const Sequence& sequence)
{
    QVector<Entry> entries;
    entries.reserve(static_cast<qsizetype>(sequence.length()));
    for (CORBA::ULong i = 0; i < sequence.length(); ++i) {
        entries.append(read(sequence[i]));
    }
    return entries;
}

void readLists(const QD_ZLK::RecordInfo& info, Record& record)
{
    record.SetBookmarkEntry(readAll<ZELKO_XML::BookmarkEntry>(info.bookmarks));
    record.SetHistoryEntry(readAll<ZELKO_XML::HistoryEntry>(info.history));
    record.SetIndexEntry(readAll<ZELKO_XML::IndexEntry>(info.indexEntries));
}

} // namespace

// The devices number rates and formats as the records do.
Record::DataRate CorbaMetaDataConverter::convertDataRateFromZelko(unsigned int rate)
{
    return rate <= QD_ZLK::RATE_VARIABLE ? static_cast<Record::DataRate>(rate) : Record::DataRate::NotSet;
}

Record::DataFormat CorbaMetaDataConverter::convertDataFormatFromZelko(unsigned int format)
{
    return format <= QD_ZLK::FORMAT_OTHER ? static_cast<Record::DataFormat>(format) : Record::DataFormat::Unknown;
}

Record CorbaMetaDataConverter::convertRecordFromZelko(const QD_ZLK::RecordInfo& info)
{
    Record record;
    record.SetRecordID(fromCorba(info.recordId.in()));
    record.SetRecordName(fromCorba(info.recordName.in()));
    record.SetStartTime(notNegative(info.startTime));
    record.SetStopTime(notNegative(info.stopTime));
    record.SetSize(notNegative(info.size));
    record.SetRecordStatus(static_cast<Record::RecordStatus>(info.kind)); // the ORB refuses numbers beyond the last
    record.SetDataFormat(convertDataFormatFromZelko(info.format));
    record.SetStartPosition(notNegative(info.startPosition));
    record.SetStopPosition(notNegative(info.stopPosition));
    record.SetRecordingLoopSize(notNegative(info.loopSize));
    record.SetDataRate(convertDataRateFromZelko(info.dataRate));
    record.SetDeletable(info.deletable);
    readLists(info, record);
    return record;
}

} // namespace ZelkoCommon
