#include <recorder/service/flowsocket.h>

#include <zelkobase/orb/hostaddress.h>

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

namespace ZelkoRecorder {

namespace {

// What the system may keep until the thread comes to it; it may give less.
constexpr int receiveBuffer = 4 * 1024 * 1024;

std::string hostOf(const sockaddr_storage& address, socklen_t length)
{
    return ZelkoCommon::plainAddress(reinterpret_cast<const sockaddr*>(&address), length);
}

int boundSocket(const addrinfo& where)
{
    const int socket = ::socket(where.ai_family, where.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, where.ai_protocol);
    if (socket < 0) {
        return -1;
    }
    ::setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
    if (where.ai_socktype == SOCK_STREAM) { // the port of the recording before may not be over it yet
        constexpr int reuse = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse);
    }
    const bool listens = ::bind(socket, where.ai_addr, where.ai_addrlen) == 0 &&
                         (where.ai_socktype == SOCK_DGRAM || ::listen(socket, 1) == 0);
    if (!listens) {
        ::close(socket);
        return -1;
    }
    return socket;
}

int openSocket(FlowSocket::Kind kind, const QString& address, quint16 port)
{
    addrinfo hints{};
    hints.ai_socktype = kind == FlowSocket::Kind::Datagrams ? SOCK_DGRAM : SOCK_STREAM;
    hints.ai_flags = AI_PASSIVE;
    addrinfo* found = nullptr;
    const QByteArray host = address.toUtf8();
    const QByteArray service = QByteArray::number(port);
    if (::getaddrinfo(host.isEmpty() ? nullptr : host.constData(), service.constData(), &hints, &found) != 0) {
        return -1;
    }
    const int socket = boundSocket(*found);
    ::freeaddrinfo(found);
    return socket;
}

} // namespace

std::unique_ptr<FlowSocket> FlowSocket::open(Kind kind, const QString& address, quint16 port, const std::string& sender,
                                             QString* error)
{
    const int socket = openSocket(kind, address, port);
    if (socket < 0) {
        *error = QStringLiteral("there is no socket to be had at \"%1\", port %2").arg(address).arg(port);
        return nullptr;
    }
    return std::unique_ptr<FlowSocket>(new FlowSocket(kind, socket, sender));
}

FlowSocket::FlowSocket(Kind kind, int socket, std::string sender)
    : m_kind(kind)
    , m_socket(socket)
    , m_sender(std::move(sender))
{}

FlowSocket::~FlowSocket()
{
    ::close(m_socket);
    if (m_connection >= 0) {
        ::close(m_connection);
    }
}

quint16 FlowSocket::port() const
{
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    ::getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &length);
    const auto port = address.ss_family == AF_INET6 ? reinterpret_cast<const sockaddr_in6&>(address).sin6_port
                                                    : reinterpret_cast<const sockaddr_in&>(address).sin_port;
    return ntohs(port);
}

FlowSocket::Got FlowSocket::read(char* buffer, std::size_t room, std::size_t* size)
{
    if (m_kind == Kind::Stream && !accept()) {
        return Got::Nothing;
    }
    sockaddr_storage from{};
    socklen_t length = sizeof from;
    const ssize_t got = ::recvfrom(descriptor(), buffer, room, 0, reinterpret_cast<sockaddr*>(&from), &length);
    if (m_kind == Kind::Stream) {
        *size = got > 0 ? static_cast<std::size_t>(got) : 0;
        const bool waits = got < 0 && (errno == EAGAIN || errno == EINTR);
        return got > 0 ? Got::Bytes : waits ? Got::Nothing : Got::End;
    }
    if (got < 0) {
        return Got::Nothing;
    }
    *size =
        hostOf(from, length) == m_sender ? static_cast<std::size_t>(got) : 0; // a datagram of nobody is an empty one
    return Got::Bytes;
}

FlowSocket::Sent FlowSocket::write(const char* bytes, std::size_t size, std::size_t* written) const
{
    const ssize_t sent = ::send(m_connection, bytes, size, MSG_NOSIGNAL);
    *written = sent > 0 ? static_cast<std::size_t>(sent) : 0;
    const bool waits = sent < 0 && (errno == EAGAIN || errno == EINTR);
    return sent >= 0 ? Sent::Bytes : waits ? Sent::Nothing : Sent::End;
}

bool FlowSocket::accept()
{
    if (m_connection >= 0) {
        return true;
    }
    sockaddr_storage from{};
    socklen_t length = sizeof from;
    const int connection =
        ::accept4(m_socket, reinterpret_cast<sockaddr*>(&from), &length, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (connection >= 0 && hostOf(from, length) != m_sender) {
        ::close(connection);
        return false;
    }
    m_connection = connection;
    return connection >= 0;
}

} // namespace ZelkoRecorder
