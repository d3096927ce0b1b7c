#include <zelkobase/discovery/announcement.h>

#include <reportcore/rgexception.h>

#include <QHostAddress>

#include <algorithm>

namespace ZelkoCommon {

using ZELKO_XML::ZELKO_AvailableDevice;

namespace {

bool isPrintable(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.isPrint() || c.isSurrogate(); });
}

bool isPort(const QString& text)
{
    bool isNumber = false;
    return text.toUShort(&isNumber) != 0 && isNumber;
}

// A device has one text for an address, by which it is known; and an address that means any one leads nowhere.
bool isAddress(const QString& text)
{
    const QHostAddress address(text);
    const bool isAny = address == QHostAddress(QHostAddress::AnyIPv4) || address == QHostAddress(QHostAddress::AnyIPv6);
    return !address.isNull() && !isAny && !address.isMulticast() && !address.isBroadcast() &&
           address.toString() == text;
}

// What the windows show and the configuration proposes must be what it claims to be.
bool isSound(const ZELKO_AvailableDevice& device)
{
    const QVector<QString>& addresses = device.GetIPAddress();
    return addresses.size() <= Announcement::MaximumAddresses &&
           std::all_of(addresses.begin(), addresses.end(), &isAddress) && isPrintable(device.GetFirmware()) &&
           isPrintable(device.GetDeviceName()) && isPrintable(device.GetGUID()) &&
           (!device.IsPortNumberSet() || isPort(device.GetPortNumber()));
}

} // namespace

QByteArray Announcement::write(const ZELKO_AvailableDevice& device)
{
    const QByteArray datagram = device.GetXmlString().toUtf8();
    return datagram.size() > MaximumSize ? QByteArray() : datagram;
}

std::optional<ZELKO_AvailableDevice> Announcement::read(const QByteArray& datagram)
{
    if (datagram.size() > MaximumSize || !datagram.isValidUtf8()) {
        return std::nullopt;
    }
    ZELKO_AvailableDevice device;
    try {
        const bool taken = device.SetXmlString(QString::fromUtf8(datagram), false);
        return taken && isSound(device) ? std::optional(device) : std::nullopt;
    } catch (const RGException&) {
        return std::nullopt;
    }
}

} // namespace ZelkoCommon
