#include <zelkobase/data/zelko_recorddata.h>

#include <reportcore/fieldtable.h>

namespace ZELKO_XML {

RG_DEFINE_ENUM(ZELKO_RecordData, RecordStatus, ZELKO_RECORD_STATUSES)
RG_DEFINE_ENUM(ZELKO_RecordData, DataRate, ZELKO_DATA_RATES)
RG_DEFINE_ENUM(ZELKO_RecordData, DataFormat, ZELKO_DATA_FORMATS)
RG_DEFINE_ENUM(ZELKO_RecordData, Interface, ZELKO_INTERFACES)
RG_DEFINE_OBJECT(ZELKO_RecordData, ZELKO_RECORDDATA_FIELDS, Skip)

// The ID is the key of the record everywhere, and an empty key means no record.
QString ZELKO_RecordData::contentProblem() const
{
    return m_RecordID.isEmpty() ? QStringLiteral("RecordID is empty") : QString();
}

} // namespace ZELKO_XML
