#include <zelkobase/data/datarateusage.h>

namespace ZELKO_XML {

DataRateUsage::DataRate DataRateUsage::NameToDataRate(const QString& name)
{
    return ZELKO_RecordData::NameToDataRate(name);
}

} // namespace ZELKO_XML
