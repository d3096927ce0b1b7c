#include <recorder/served/writepolicy.h>

#include <valuecore/valuebase.h>
#include <zelkobase/names/valuenames.h>

#include <arpa/inet.h>

#include <cstring>

namespace ZelkoRecorder {

TreeLinkServer::MayWrite writePolicy(const QString& listenAddress)
{
    const bool local = isLoopbackAddress(listenAddress);
    const QString commands = QString(zelko::names::zelkoCommand) + QLatin1Char('/');
    return [local, commands](const QString&, const ValueBase& value) {
        return local && value.GetPathName().startsWith(commands);
    };
}

bool isLoopbackAddress(const QString& address)
{
    const QByteArray text = address.toLatin1();
    in_addr v4{};
    if (inet_pton(AF_INET, text.constData(), &v4) == 1) {
        return ntohl(v4.s_addr) >> 24 == 127;
    }
    in6_addr v6{};
    if (inet_pton(AF_INET6, text.constData(), &v6) == 1) {
        return std::memcmp(&v6, &in6addr_loopback, sizeof v6) == 0;
    }
    return address == QLatin1String("localhost");
}

} // namespace ZelkoRecorder
