#pragma once

#include <zelkobase/data/zelkobasedata_export.h>

#include <reportcore/fielddeclaration.h>

#include <QMetaType>

#define ZELKO_DEVICETYPES(ENUMERATOR)                                                                                  \
    ENUMERATOR(ZELKO, "ZELKO")                                                                                         \
    ENUMERATOR(ZELKO_XG, "ZELKO XG")                                                                                   \
    ENUMERATOR(ZELKO_Rack, "ZELKO Rack")                                                                               \
    ENUMERATOR(ZELKO_Compact, "ZELKO Compact")                                                                         \
    ENUMERATOR(ZELKO_Virtual, "ZELKO Virtual")                                                                         \
    ENUMERATOR(QX310, "QX310")

#define ZELKO_AVAILABLEDEVICE_FIELDS(FIELD)                                                                            \
    FIELD(Required, DeviceType, DeviceType)                                                                            \
    FIELD(RequiredList, QString, IPAddress)                                                                            \
    FIELD(Required, QString, Firmware)                                                                                 \
    FIELD(Required, quint64, LastBroadcast)                                                                            \
    FIELD(Optional, QString, DeviceName)                                                                               \
    FIELD(Optional, QString, GUID)                                                                                     \
    FIELD(Optional, QString, PortNumber)

namespace ZELKO_XML {

/// What a recorder device announces of itself. The first address is the one that is proposed for a configuration;
/// LastBroadcast is the moment of the announcement in milliseconds since the epoch; PortNumber is a decimal text, and
/// where it is set the device dictates its port.
class ZELKOBASEDATA_EXPORT ZELKO_AvailableDevice : public REPORTGENERATOR::RGObject
{
public:
    RG_ENUM(DeviceType, ZELKO_DEVICETYPES)
    RG_OBJECT(ZELKO_AvailableDevice, ZELKO_AVAILABLEDEVICE_FIELDS)
};

} // namespace ZELKO_XML

Q_DECLARE_METATYPE(ZELKO_XML::ZELKO_AvailableDevice)
