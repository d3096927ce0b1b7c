#pragma once

#include <QtGlobal>

#include <cstddef>
#include <memory>
#include <stop_token>

namespace ZelkoRecorder {

/// The other end of a FlowSocket for a stream, in this process: gives data to it, or takes data from it. For one
/// thread.
class FlowConnection
{
public:
    enum class Moved {
        Bytes,
        Nothing, ///< now; later perhaps
        End      ///< there is nobody any more
    };

    /// Connects to a port of this host, and waits until whoever listens there has room for it. Null if nobody listens
    /// there, and when `stop` is requested before it is done.
    static std::unique_ptr<FlowConnection> open(quint16 port, const std::stop_token& stop = {});
    ~FlowConnection();
    FlowConnection(const FlowConnection&) = delete;
    FlowConnection& operator=(const FlowConnection&) = delete;

    /// Moves some bytes: how many, in `moved`. Neither blocks.
    Moved write(const char* bytes, std::size_t size, std::size_t* moved) const;
    Moved read(char* buffer, std::size_t room, std::size_t* moved) const;

private:
    explicit FlowConnection(int socket);

    const int m_socket;
};

} // namespace ZelkoRecorder
