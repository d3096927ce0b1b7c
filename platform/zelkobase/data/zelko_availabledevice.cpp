#include <zelkobase/data/zelko_availabledevice.h>

#include <reportcore/fieldtable.h>

namespace ZELKO_XML {

RG_DEFINE_ENUM(ZELKO_AvailableDevice, DeviceType, ZELKO_DEVICETYPES)
RG_DEFINE_OBJECT(ZELKO_AvailableDevice, ZELKO_AVAILABLEDEVICE_FIELDS, Skip)

} // namespace ZELKO_XML
