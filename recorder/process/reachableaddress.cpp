#include <recorder/process/reachableaddress.h>

#include <memory>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>

namespace ZelkoRecorder {

namespace {

bool isEveryInterface(const QString& address)
{
    return address.isEmpty() || address == QLatin1String("0.0.0.0") || address == QLatin1String("::");
}

bool isUseful(const ifaddrs& address)
{
    constexpr unsigned wanted = IFF_UP | IFF_RUNNING;
    return address.ifa_addr && address.ifa_addr->sa_family == AF_INET && (address.ifa_flags & wanted) == wanted &&
           (address.ifa_flags & IFF_LOOPBACK) == 0;
}

QString textOf(const sockaddr& address)
{
    char text[INET_ADDRSTRLEN] = {};
    inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in&>(address).sin_addr, text, sizeof text);
    return QString::fromLatin1(text);
}

} // namespace

QString reachableAddress(const QString& listenAddress)
{
    if (!isEveryInterface(listenAddress)) {
        return listenAddress;
    }
    ifaddrs* all = nullptr;
    const int failed = getifaddrs(&all);
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(all, freeifaddrs);
    for (const ifaddrs* address = failed == 0 ? all : nullptr; address; address = address->ifa_next) {
        if (isUseful(*address)) {
            return textOf(*address->ifa_addr);
        }
    }
    return QStringLiteral("127.0.0.1");
}

} // namespace ZelkoRecorder
