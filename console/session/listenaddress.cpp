#include <console/session/listenaddress.h>

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QHostInfo>
#include <QTimer>
#include <QUdpSocket>

namespace ZelkoConsole {

using ZelkoCommon::ZelkoConfiguration;

namespace {

constexpr quint16 anyPort = 8004; // nothing is sent there

// Has the answer come to a slot by its name: Qt 6.4 never frees a function object whose look-up was aborted.
class LookUp final : public QObject
{
    Q_OBJECT

public:
    QList<QHostAddress> run(const QString& host, std::chrono::milliseconds patience)
    {
        const int number = QHostInfo::lookupHost(host, this, SLOT(take(QHostInfo)));
        QTimer::singleShot(patience, &m_loop, &QEventLoop::quit);
        m_loop.exec();
        QHostInfo::abortHostLookup(number);
        return m_addresses;
    }

private Q_SLOTS:
    void take(const QHostInfo& info)
    {
        m_addresses = info.addresses();
        m_loop.quit();
    }

private:
    QEventLoop m_loop;
    QList<QHostAddress> m_addresses;
};

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
    const QHostAddress literal(host);
    for (const QHostAddress& target : literal.isNull() ? LookUp().run(host, patience) : QList{literal}) {
        const QHostAddress own = addressTowards(target);
        if (!own.isNull() && !own.isLinkLocal()) {
            return own;
        }
    }
    return std::nullopt;
}

bool meansAllInterfaces(const QString& address)
{
    const QHostAddress parsed(address);
    return parsed == QHostAddress::AnyIPv4 || parsed == QHostAddress::AnyIPv6;
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

#include "listenaddress.moc"
