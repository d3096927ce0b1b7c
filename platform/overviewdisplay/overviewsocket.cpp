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

// The address of this host on the way to another: a datagram that is only addressed needs no peer. Empty if there is
// no way.
std::string addressTowards(const std::string& recorder)
{
    constexpr quint16 anyPort = 9;
    const auto target = ZelkoCommon::datagramAddress(recorder, anyPort);
    const int socket = target ? newSocket(target->ai_family) : -1;
    if (socket < 0) {
        return {};
    }
    const bool hasWay = ::connect(socket, target->ai_addr, target->ai_addrlen) == 0;
    std::string own = hasWay ? nameOf(socket).address : std::string();
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

int socketAt(const std::string& own)
{
    const auto address = ZelkoCommon::datagramAddress(own, 0);
    return address ? boundSocket(address->ai_family, address->ai_addr, address->ai_addrlen) : -1;
}

int socketAnywhere()
{
    const int socket = socketAt("::");
    return socket >= 0 ? socket : socketAt("0.0.0.0");
}

bool isLoopback(const std::string& address)
{
    return address == "::1" || address.rfind("127.", 0) == 0;
}

} // namespace

// A recorder on this host may be known by one address and be reached by another: it is told none then, and sends from
// the one to which it was called.
OverviewSocket::Way OverviewSocket::wayTo(const std::string& recorder, const std::string& own)
{
    if (recorder.empty()) {
        return {};
    }
    if (own != recorder || isLoopback(recorder)) {
        return {own, {recorder}};
    }
    return {{}, {recorder, ZelkoCommon::loopbackAddress, "::1"}};
}

std::unique_ptr<OverviewSocket> OverviewSocket::open(const QString& recorder)
{
    const std::string peer = ZelkoCommon::plainAddress(recorder.toStdString());
    Way way = wayTo(peer, addressTowards(peer));
    const int socket = way.own.empty() ? socketAnywhere() : socketAt(way.own);
    return socket < 0 ? nullptr : std::unique_ptr<OverviewSocket>(new OverviewSocket(socket, std::move(way)));
}

OverviewSocket::OverviewSocket(int socket, Way way)
    : m_socket(socket)
    , m_way(std::move(way))
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
