#pragma once

#include <zelkobase/data/zelko_recorddata.h>

namespace ZELKO_XML {

/// The data rate classes as a channel's values name them: the same as those of a record.
class ZELKOBASEDATA_EXPORT DataRateUsage
{
public:
    DataRateUsage() = delete;

    using DataRate = ZELKO_RecordData::DataRate;

    /// Enumerator of that name, -1 if there is none.
    static DataRate NameToDataRate(const QString& name);
};

} // namespace ZELKO_XML
