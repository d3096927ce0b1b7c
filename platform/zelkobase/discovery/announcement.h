#pragma once

#include <zelkobase/data/zelko_availabledevice.h>
#include <zelkobase/discovery/zelkobasediscovery_export.h>

#include <QByteArray>

#include <optional>

namespace ZelkoCommon {

/// The form in which a recorder device announces itself by UDP: the XML document of a ZELKO_AvailableDevice in UTF-8,
/// one a datagram. All functions are pure and may be called on any thread.
class ZELKOBASEDISCOVERY_EXPORT Announcement
{
public:
    Announcement() = delete;

    /// Port on which announcements are sent and heard.
    static constexpr quint16 DefaultPort = 8111;

    /// No datagram is longer, so that each fits into one packet of the network.
    static constexpr qsizetype MaximumSize = 1400;

    /// Addresses that a device may announce.
    static constexpr qsizetype MaximumAddresses = 16;

    /// The datagram of a device; empty if it would be too long. Throws RGException if a required field is missing.
    static QByteArray write(const ZELKO_XML::ZELKO_AvailableDevice& device);

    /// The device of a datagram. Nothing for what is no announcement: too long, no XML of a device, an address that is
    /// none or is not in its canonical form, a port that is none, or a text with characters that no device writes.
    static std::optional<ZELKO_XML::ZELKO_AvailableDevice> read(const QByteArray& datagram);
};

} // namespace ZelkoCommon
