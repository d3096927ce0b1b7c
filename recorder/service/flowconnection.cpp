#include <recorder/service/flowconnection.h>

#include <netinet/in.h>
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

} // namespace

std::unique_ptr<FlowConnection> FlowConnection::open(quint16 port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket >= 0 && ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
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
