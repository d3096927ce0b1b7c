#pragma once

#include <QtGlobal>

#include <cstddef>
#include <memory>

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

    /// Connects to a port of this host. Null if nobody listens there.
    static std::unique_ptr<FlowConnection> open(quint16 port);
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
