#pragma once

#include <zelkobase/data/zelko_availabledevice.h>

/// A device as it announces itself.
inline ZELKO_XML::ZELKO_AvailableDevice makeDevice(const QStringList& addresses)
{
    ZELKO_XML::ZELKO_AvailableDevice device;
    device.SetDeviceType(ZELKO_XML::ZELKO_AvailableDevice::DeviceType::ZELKO_XG);
    device.SetIPAddress(addresses.toVector());
    device.SetFirmware(QStringLiteral("4.2.1"));
    device.SetLastBroadcast(1'700'000'000'000);
    return device;
}
