#pragma once

#include <zelkobase/data/zelko_recorddata.h>
#include <zelkobase/service/zelkobaseservice_export.h>

namespace QD_ZLK {
struct RecordInfo;
}

namespace ZelkoCommon {

/// Reads the numbers of the recorder's service and of its devices into the record classes. Any thread.
class ZELKOBASESERVICE_EXPORT CorbaMetaDataConverter
{
public:
    CorbaMetaDataConverter() = delete;

    /// The device's number of a data rate class; NotSet for a number that no class has.
    static ZELKO_XML::ZELKO_RecordData::DataRate convertDataRateFromZelko(unsigned int rate);

    /// The device's number of a data format; Unknown for a number that no format has.
    static ZELKO_XML::ZELKO_RecordData::DataFormat convertDataFormatFromZelko(unsigned int format);

    /// A whole record as the service gives it. Numbers that a record cannot have, negative ones for instance, become 0.
    static ZELKO_XML::ZELKO_RecordData convertRecordFromZelko(const QD_ZLK::RecordInfo& info);
};

} // namespace ZelkoCommon
