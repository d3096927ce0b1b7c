#include "overviewsocket_p.h"

#include <zelkobase/orb/hostaddress.h>

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

namespace SPECTRUM_OVERVIEW {

namespace {

// What the system may keep until the thread comes to it; it may give less.
constexpr int receiveBuffer = 4 * 1024 * 1024;

const sockaddr* plain(const sockaddr_storage& address)
{
    return reinterpret_cast<const sockaddr*>(&address);
}

Sender senderOf(const sockaddr_storage& address, socklen_t length)
{
    const auto port = address.ss_family == AF_INET6 ? reinterpret_cast<const sockaddr_in6&>(address).sin6_port
                                                    : reinterpret_cast<const sockaddr_in&>(address).sin_port;
    return {ZelkoCommon::plainAddress(plain(address), length), ntohs(port)};
}

Sender nameOf(int socket)
{
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    if (::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        return {};
    }
    return senderOf(address, length);
}

int newSocket(int family)
{
    return ::socket(family, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

struct FreeAddress
{
    void operator()(addrinfo* address) const { ::freeaddrinfo(address); }
};
using Address = std::unique_ptr<addrinfo, FreeAddress>;

// Null for what is no address in numbers.
Address addressOf(const QString& text, quint16 port)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    const QByteArray service = QByteArray::number(port);
    const int failure = ::getaddrinfo(text.toUtf8().constData(), service.constData(), &hints, &found);
    return Address(failure == 0 ? found : nullptr);
}

// The address of this host on the way to another: a datagram that is only addressed needs no peer. Empty if there is
// no way.
QString addressTowards(const QString& recorder)
{
    constexpr quint16 anyPort = 9;
    const Address target = addressOf(recorder, anyPort);
    const int socket = target ? newSocket(target->ai_family) : -1;
    if (socket < 0) {
        return {};
    }
    const bool hasWay = ::connect(socket, target->ai_addr, target->ai_addrlen) == 0;
    QString own = hasWay ? QString::fromStdString(nameOf(socket).address) : QString();
    ::close(socket);
    return own;
}

int boundSocket(int family, const sockaddr* address, socklen_t length)
{
    const int socket = newSocket(family);
    if (socket < 0) {
        return -1;
    }
    constexpr int no = 0;
    if (family == AF_INET6) { // one of both kinds where it may be any address
        ::setsockopt(socket, IPPROTO_IPV6, IPV6_V6ONLY, &no, sizeof no);
    }
    ::setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
    if (::bind(socket, address, length) == 0) {
        return socket;
    }
    ::close(socket);
    return -1;
}

int socketAt(const QString& own)
{
    const Address address = addressOf(own, 0);
    return address ? boundSocket(address->ai_family, address->ai_addr, address->ai_addrlen) : -1;
}

int socketAnywhere()
{
    const int socket = socketAt(QStringLiteral("::"));
    return socket >= 0 ? socket : socketAt(QStringLiteral("0.0.0.0"));
}

bool isLoopback(const std::string& address)
{
    return address == "::1" || address.rfind("127.", 0) == 0;
}

} // namespace

// A recorder on this host may be known by one address and be reached by another: it is told none then, and sends from
// the one to which it was called.
std::unique_ptr<OverviewSocket> OverviewSocket::open(const QString& recorder)
{
    const std::string peer = ZelkoCommon::plainAddress(recorder.toStdString());
    const QString own = peer.empty() ? QString() : addressTowards(recorder);
    const bool isHere = own.toStdString() == peer && !isLoopback(peer);
    std::vector<std::string> senders;
    if (!peer.empty()) {
        senders.push_back(peer);
    }
    if (!peer.empty() && isHere) {
        senders.insert(senders.end(), {ZelkoCommon::loopbackAddress, "::1"});
    }
    const QString told = isHere ? QString() : own;
    const int socket = told.isEmpty() ? socketAnywhere() : socketAt(told);
    return socket < 0 ? nullptr : std::unique_ptr<OverviewSocket>(new OverviewSocket(socket, told, std::move(senders)));
}

OverviewSocket::OverviewSocket(int socket, QString ownAddress, std::vector<std::string> senders)
    : m_socket(socket)
    , m_ownAddress(std::move(ownAddress))
    , m_senders(std::move(senders))
{}

OverviewSocket::~OverviewSocket()
{
    ::close(m_socket);
}

quint16 OverviewSocket::port() const
{
    return nameOf(m_socket).port;
}

bool OverviewSocket::read(char* buffer, std::size_t room, std::size_t* size, Sender* sender) const
{
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    const ssize_t got = ::recvfrom(m_socket, buffer, room, MSG_TRUNC, reinterpret_cast<sockaddr*>(&address), &length);
    if (got < 0) {
        return false;
    }
    *size = static_cast<std::size_t>(got);
    *sender = senderOf(address, length);
    return true;
}

} // namespace SPECTRUM_OVERVIEW
