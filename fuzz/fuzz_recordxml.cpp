// Foreign bytes as a record's XML and as its binary form: what is refused leaves the record as it was, what is taken
// comes back equal through every form.
#include "require.h"

#include <zelkobase/data/zelko_recorddata.h>

#include <reportcore/rgexception.h>

#include <QXmlStreamReader>

#include <cstdint>

using ZELKO_XML::ZELKO_RecordData;

namespace {

ZELKO_RecordData untouchedRecord()
{
    ZELKO_RecordData record;
    record.SetValidate(false);
    record.SetRecordName(QStringLiteral("untouched"));
    return record;
}

template <typename Read>
bool readOrUntouched(ZELKO_RecordData& record, Read read)
{
    bool taken = false;
    try {
        taken = read();
    } catch (const RGException&) {
    }
    require(taken || record == untouchedRecord());
    return taken;
}

void requireBinaryRoundTrip(const ZELKO_RecordData& record)
{
    std::string bytes;
    record.appendBinary(bytes);
    const char* begin = bytes.data();
    ZELKO_RecordData back;
    require(back.readBinary(begin, bytes.data() + bytes.size()) && begin == bytes.data() + bytes.size());
    require(back == record);
}

void requireXmlRoundTrip(const ZELKO_RecordData& record)
{
    const QString text = record.GetXmlString();
    ZELKO_RecordData back;
    back.SetValidate(false);
    require(back.SetXmlString(text, true) && back == record);
    back = untouchedRecord();
    QXmlStreamReader reader(text);
    require(back.ProcessXml(reader) && back == record);
}

void tryXml(const QString& text, bool validate)
{
    ZELKO_RecordData record = untouchedRecord();
    record.SetValidate(validate);
    if (!readOrUntouched(record, [&] { return record.SetXmlString(text, true); })) {
        return;
    }
    if (validate) {
        record.Check();
    }
    requireXmlRoundTrip(record);
    requireBinaryRoundTrip(record);
}

void tryBinary(const char* begin, const char* end)
{
    ZELKO_RecordData record = untouchedRecord();
    const char* const start = begin;
    if (readOrUntouched(record, [&] { return record.readBinary(begin, end); })) {
        require(begin > start && begin <= end);
        requireBinaryRoundTrip(record);
        requireXmlRoundTrip(record);
    } else {
        require(begin == start);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* const bytes = reinterpret_cast<const char*>(data);
    const QString text = QString::fromUtf8(bytes, static_cast<qsizetype>(size));
    tryXml(text, true);
    tryXml(text, false);
    tryBinary(bytes, bytes + size);
    return 0;
}
