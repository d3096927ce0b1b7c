#include <recorder/service/flowconnection.h>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace ZelkoRecorder {

namespace {

using Moved = FlowConnection::Moved;

Moved outcome(ssize_t result, Moved ofNone, std::size_t* moved)
{
    *moved = result > 0 ? static_cast<std::size_t>(result) : 0;
    const bool waits = result < 0 && (errno == EAGAIN || errno == EINTR);
    return result > 0 ? Moved::Bytes : result == 0 ? ofNone : waits ? Moved::Nothing : Moved::End;
}

constexpr int tick = 20; // milliseconds until it looks again whether it is to stop

// False also when it is to stop before that. An interrupted wait is only a shorter one.
bool awaitConnection(int socket, const std::stop_token& stop)
{
    pollfd waiting{socket, POLLOUT, 0};
    while (::poll(&waiting, 1, tick) <= 0) {
        if (stop.stop_requested()) {
            return false;
        }
    }
    int error = 0;
    socklen_t length = sizeof error;
    return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &length) == 0 && error == 0;
}

bool connectTo(const sockaddr_in& address, int socket, const std::stop_token& stop)
{
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        return true;
    }
    return (errno == EINPROGRESS || errno == EINTR) && awaitConnection(socket, stop);
}

} // namespace

std::unique_ptr<FlowConnection> FlowConnection::open(quint16 port, const std::stop_token& stop)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (socket < 0) {
        return nullptr;
    }
    if (connectTo(address, socket, stop)) {
        return std::unique_ptr<FlowConnection>(new FlowConnection(socket));
    }
    ::close(socket);
    return nullptr;
}

FlowConnection::FlowConnection(int socket)
    : m_socket(socket)
{}

FlowConnection::~FlowConnection()
{
    ::close(m_socket);
}

Moved FlowConnection::write(const char* bytes, std::size_t size, std::size_t* moved) const
{
    return outcome(::send(m_socket, bytes, size, MSG_NOSIGNAL | MSG_DONTWAIT), Moved::Nothing, moved);
}

Moved FlowConnection::read(char* buffer, std::size_t room, std::size_t* moved) const
{
    return outcome(::recv(m_socket, buffer, room, MSG_DONTWAIT), Moved::End, moved);
}

} // namespace ZelkoRecorder
