// Datagrams as the announcements of devices: what is accepted is a device that can be announced again, the rest is
// passed over.
#include "require.h"

#include <zelkobase/discovery/announcement.h>

#include <cstdint>

using ZelkoCommon::Announcement;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray datagram(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto device = Announcement::read(datagram);
    if (device) {
        require(datagram.size() <= Announcement::MaximumSize);
        require(!device->GetIPAddress().isEmpty() && device->GetIPAddress().size() <= Announcement::MaximumAddresses);
        const QByteArray again = Announcement::write(*device);
        require(again.isEmpty() || Announcement::read(again) == device);
    }
    return 0;
}
