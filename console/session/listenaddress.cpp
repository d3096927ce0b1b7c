#include <console/session/listenaddress.h>

#include <zelkobase/service/hostlookup.h>

#include <QDeadlineTimer>
#include <QUdpSocket>

#include <algorithm>
#include <array>

namespace ZelkoConsole {

using ZelkoCommon::ZelkoConfiguration;

namespace {

constexpr quint16 anyPort = 8004; // nothing is sent there
constexpr std::array anyInterface{QHostAddress::AnyIPv4, QHostAddress::AnyIPv6};

// Connecting a datagram socket asks the system for the route and sends nothing.
QHostAddress addressTowards(const QHostAddress& target)
{
    if (target.isLoopback()) {
        return QHostAddress(QHostAddress::LocalHost);
    }
    QUdpSocket socket;
    socket.connectToHost(target, anyPort);
    return socket.waitForConnected(0) ? socket.localAddress() : QHostAddress();
}

std::optional<QHostAddress> ownAddress(const QString& host, std::chrono::milliseconds patience)
{
    for (const QString& target : ZelkoCommon::addressesOf(host, patience).value_or(QStringList())) {
        const QHostAddress own = addressTowards(QHostAddress(target));
        if (!own.isNull() && !own.isLinkLocal()) {
            return own;
        }
    }
    return std::nullopt;
}

bool meansAllInterfaces(const QString& address)
{
    const QHostAddress parsed(address);
    return std::any_of(anyInterface.begin(), anyInterface.end(),
                       [&](QHostAddress::SpecialAddress any) { return parsed == any; });
}

} // namespace

QString listenAddress(const ZelkoConfiguration& site, const OwnAddress& ownAddress)
{
    if (!site.ListenAddress().isEmpty()) {
        return meansAllInterfaces(site.ListenAddress()) ? QString() : site.ListenAddress();
    }
    QHostAddress found(QHostAddress::LocalHost);
    for (const auto& subSystem : site.SubSystems()) {
        const auto own = ownAddress(subSystem.host);
        if (!own || (!own->isLoopback() && !found.isLoopback() && *own != found)) {
            return {};
        }
        if (!own->isLoopback()) {
            found = *own;
        }
    }
    return found.toString();
}

QString listenAddress(const ZelkoConfiguration& site, std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    return listenAddress(site, [&deadline](const QString& host) {
        return ownAddress(host, std::chrono::ceil<std::chrono::milliseconds>(deadline.remainingTimeAsDuration()));
    });
}

} // namespace ZelkoConsole
