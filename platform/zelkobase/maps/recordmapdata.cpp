#include <zelkobase/maps/recordmapdata.h>

#include "sizeditem_p.h"

namespace zelko::recordmap {

RecordMapData::RecordMapData() = default;
RecordMapData::RecordMapData(const RecordMapData& other) = default;
RecordMapData::RecordMapData(RecordMapData&& other) noexcept = default;
RecordMapData& RecordMapData::operator=(const RecordMapData& other) = default;
RecordMapData& RecordMapData::operator=(RecordMapData&& other) noexcept = default;
RecordMapData::~RecordMapData() = default;

RecordMapData::RecordMapData(RecordDataPtr record)
    : m_record(std::move(record))
{}

QString RecordMapData::GetKey() const
{
    return m_record ? m_record->GetRecordID() : QString();
}

// An item that is set again is mostly the same object, and a record with its lists is much to compare.
bool RecordMapData::operator==(const RecordMapData& other) const
{
    if (m_record == other.m_record) {
        return true;
    }
    return m_record && other.m_record && *m_record == *other.m_record;
}

void RecordMapData_ItemFormat::appendTo(std::string& out, const RecordMapData& item)
{
    appendSizedItem(out, [&] {
        if (const auto& record = item.GetRecordData()) {
            record->appendBinary(out);
        }
    });
}

void RecordMapData_ItemFormat::fetch(const RecordMapData& item)
{
    constexpr std::size_t cacheLine = 64;
    const auto* const record = reinterpret_cast<const char*>(item.GetRecordData().get());
    for (std::size_t at = 0; at < sizeof(ZELKO_XML::ZELKO_RecordData); at += cacheLine) {
        __builtin_prefetch(record + at);
    }
}

void RecordMapData_ItemFormat::fetchContent(const RecordMapData& item)
{
    if (const auto* const record = item.GetRecordData().get()) {
        __builtin_prefetch(record->GetRecordID().constData());
        __builtin_prefetch(record->GetRecordName().constData());
    }
}

std::string RecordMapData_ItemFormat::toStandardString(const RecordMapData& item)
{
    std::string out;
    appendTo(out, item);
    return out;
}

bool RecordMapData_ItemFormat::fromCharStream(const char** stream, RecordMapData& item)
{
    SizedItem bytes = takeSizedItem(stream);
    if (bytes.isEmpty()) {
        item = RecordMapData();
        return true;
    }
    auto record = REPORTGENERATOR::RGObject::makeFromBinary<ZELKO_XML::ZELKO_RecordData>(bytes.begin, bytes.end);
    if (!record || !bytes.isEmpty()) {
        return false;
    }
    item = RecordMapData(std::move(record));
    return true;
}

QString RecordMapData_ItemFormat::GetString(const RecordMapData& item)
{
    const auto& record = item.GetRecordData();
    return record ? QStringLiteral("%1 (%2)").arg(record->GetRecordName(), record->GetRecordID()) : QString();
}

} // namespace zelko::recordmap
