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

const void* bytesOf(const sockaddr& address)
{
    return address.sa_family == AF_INET
               ? static_cast<const void*>(&reinterpret_cast<const sockaddr_in&>(address).sin_addr)
               : static_cast<const void*>(&reinterpret_cast<const sockaddr_in6&>(address).sin6_addr);
}

// An address that holds within one link only means nothing to a client without the name of the link.
bool isOfOneLink(const sockaddr& address)
{
    return address.sa_family == AF_INET6 && IN6_IS_ADDR_LINKLOCAL(static_cast<const in6_addr*>(bytesOf(address)));
}

bool isUseful(const ifaddrs& address, int family)
{
    constexpr unsigned wanted = IFF_UP | IFF_RUNNING;
    return address.ifa_addr && address.ifa_addr->sa_family == family && (address.ifa_flags & wanted) == wanted &&
           (address.ifa_flags & IFF_LOOPBACK) == 0 && !isOfOneLink(*address.ifa_addr);
}

QString textOf(const sockaddr& address)
{
    char text[INET6_ADDRSTRLEN] = {};
    inet_ntop(address.sa_family, bytesOf(address), text, sizeof text);
    return QString::fromLatin1(text);
}

QString firstOf(const ifaddrs* address, int family)
{
    while (address && !isUseful(*address, family)) {
        address = address->ifa_next;
    }
    return address ? textOf(*address->ifa_addr) : QString();
}

} // namespace

QString firstReachable(const ifaddrs* addresses, bool anyKind)
{
    const QString older = firstOf(addresses, AF_INET);
    return older.isEmpty() && anyKind ? firstOf(addresses, AF_INET6) : older;
}

QString reachableAddress(const QString& listenAddress)
{
    if (!isEveryInterface(listenAddress)) {
        return listenAddress;
    }
    ifaddrs* all = nullptr;
    if (getifaddrs(&all) != 0) {
        all = nullptr;
    }
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(all, freeifaddrs);
    const QString found = firstReachable(all, listenAddress == QLatin1String("::"));
    return found.isEmpty() ? QStringLiteral("127.0.0.1") : found;
}

} // namespace ZelkoRecorder
