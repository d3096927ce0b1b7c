#include <recorder/service/recordwire.h>

#include <zelkobase/orb/corbatext.h>

#include <cstring>
#include <cwchar>
#include <limits>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::toCorba;
using ZelkoCommon::toWideCorba;

namespace {

CORBA::LongLong wireLongLong(quint64 number)
{
    constexpr auto largest = std::numeric_limits<CORBA::LongLong>::max();
    return number > static_cast<quint64>(largest) ? largest : static_cast<CORBA::LongLong>(number);
}

CORBA::Long wireLong(quint64 number)
{
    constexpr auto largest = std::numeric_limits<CORBA::Long>::max();
    return number > static_cast<quint64>(largest) ? largest : static_cast<CORBA::Long>(number);
}

// The numbers of both sides are the same; see the contract.
template <typename Wire, typename Content>
Wire wireEnum(Content content)
{
    return static_cast<Wire>(static_cast<int>(content));
}

template <typename WireSequence, typename Entry, typename Convert>
void fill(WireSequence& sequence, const QVector<Entry>& entries, Convert convert)
{
    sequence.length(static_cast<CORBA::ULong>(entries.size()));
    CORBA::ULong next = 0;
    for (const Entry& entry : entries) {
        convert(entry, sequence[next++]);
    }
}

void convertIndex(const ZELKO_XML::IndexEntry& entry, QD_ZLK::RecordIndexEntry& wire)
{
    wire.timestamp = wireLongLong(entry.GetTimestamp());
    wire.recordOffset = wireLongLong(entry.GetRecordOffset());
    wire.tunerFrequency = wireLongLong(entry.GetTunerFrequency());
    wire.sampleRate = wireLong(entry.GetSampleRate());
    wire.bandwidth = wireLong(entry.GetBandwidth());
}

void convertBookmark(const ZELKO_XML::BookmarkEntry& entry, QD_ZLK::RecordBookmark& wire)
{
    wire.position = wireLongLong(entry.GetTimestamp());
    wire.text = toWideCorba(entry.GetBookmark());
}

void convertHistory(const ZELKO_XML::HistoryEntry& entry, QD_ZLK::RecordHistoryEntry& wire)
{
    wire.entryKey = wireLongLong(entry.GetTimestamp());
    wire.text = toWideCorba(entry.GetHistoryEntry());
}

std::size_t textSize(const CORBA::WChar* text)
{
    return 4 + 2 * std::wcslen(text) + 4; // its length, its units, a byte order mark, and what aligns the next field
}

} // namespace

QD_ZLK::RecordInfo recordInfo(const ZELKO_RecordData& record)
{
    QD_ZLK::RecordInfo info;
    info.recordId = toCorba(record.GetRecordID());
    info.recordName = toWideCorba(record.GetRecordName());
    info.startTime = wireLongLong(record.GetStartTime());
    info.stopTime = wireLongLong(record.GetStopTime());
    info.size = wireLongLong(record.GetSize());
    info.kind = wireEnum<QD_ZLK::RecordKind>(record.GetRecordStatus());
    info.format = wireEnum<QD_ZLK::DataFormat>(record.GetDataFormat());
    info.startPosition = wireLongLong(record.GetStartPosition());
    info.stopPosition = wireLongLong(record.GetStopPosition());
    info.loopSize = wireLongLong(record.GetRecordingLoopSize());
    info.dataRate = wireEnum<QD_ZLK::DataRateClass>(record.GetDataRate());
    info.deletable = record.GetDeletable();
    fill(info.indexEntries, record.GetIndexEntry(), convertIndex);
    fill(info.bookmarks, record.GetBookmarkEntry(), convertBookmark);
    fill(info.history, record.GetHistoryEntry(), convertHistory);
    return info;
}

QD_ZLK::RecordMetaData recordMetaData(const QString& device, const ZELKO_RecordData& record)
{
    const auto& index = record.GetIndexEntry();
    const ZELKO_XML::IndexEntry last = index.isEmpty() ? ZELKO_XML::IndexEntry() : index.constLast();
    QD_ZLK::RecordMetaData data;
    data.deviceId = toCorba(device);
    data.recordId = toCorba(record.GetRecordID());
    data.recordName = toWideCorba(record.GetRecordName());
    data.startTime = wireLongLong(record.GetStartTime());
    data.stopTime = wireLongLong(record.GetStopTime());
    data.format = wireEnum<QD_ZLK::DataFormat>(record.GetDataFormat());
    data.dataRate = wireEnum<QD_ZLK::DataRateClass>(record.GetDataRate());
    data.size = wireLongLong(record.GetSize());
    data.startPosition = wireLongLong(record.GetStartPosition());
    data.stopPosition = wireLongLong(record.GetStopPosition());
    data.loopSize = wireLongLong(record.GetRecordingLoopSize());
    data.tunerFrequency = wireLongLong(last.GetTunerFrequency());
    data.sampleRate = wireLongLong(last.GetSampleRate());
    data.bandwidth = wireLong(last.GetBandwidth());
    data.indexEntryCount = static_cast<CORBA::Long>(index.size());
    data.firstIndexTime = index.isEmpty() ? 0 : wireLongLong(index.constFirst().GetTimestamp());
    data.lastIndexTime = wireLongLong(last.GetTimestamp());
    return data;
}

std::size_t wireSize(const QD_ZLK::RecordInfo& info)
{
    constexpr std::size_t fixed = 160;       // numbers, lengths and padding
    constexpr std::size_t ofIndexEntry = 32; // 3 long long, 2 long
    std::size_t size = fixed + std::strlen(info.recordId) + textSize(info.recordName);
    size += ofIndexEntry * info.indexEntries.length();
    for (CORBA::ULong i = 0; i < info.bookmarks.length(); ++i) {
        size += 16 + textSize(info.bookmarks[i].text);
    }
    for (CORBA::ULong i = 0; i < info.history.length(); ++i) {
        size += 16 + textSize(info.history[i].text);
    }
    return size;
}

} // namespace ZelkoRecorder
