#pragma once

#include <QString>

#include <cstddef>
#include <memory>
#include <string>

namespace ZelkoRecorder {

/// Takes in the data of a channel, from one sender only, or gives data out to him. Never blocks; for one thread.
class FlowSocket
{
public:
    enum class Kind { Datagrams, Stream };
    enum class Got { Nothing, Bytes, End };
    enum class Sent { Bytes, Nothing, End };

    /// Listens at `address`, a name or a number, and `port`; 0: one that the system chooses. What does not come from
    /// `sender`, an address as `plainAddress` has it, is thrown away. Null, with a text for people in `error`, if that
    /// cannot be.
    static std::unique_ptr<FlowSocket> open(Kind kind, const QString& address, quint16 port, const std::string& sender,
                                            QString* error);
    ~FlowSocket();
    FlowSocket(const FlowSocket&) = delete;
    FlowSocket& operator=(const FlowSocket&) = delete;

    Kind kind() const { return m_kind; }
    quint16 port() const;

    /// To be polled for reading; another one after a `read`.
    int descriptor() const { return m_connection >= 0 ? m_connection : m_socket; }

    /// One datagram, or some bytes of the stream, into `buffer`; the rest of a datagram that is larger is lost. The one
    /// connection of a stream that is taken on is the first one of the sender; its end is `End`.
    Got read(char* buffer, std::size_t room, std::size_t* size);

    /// Whether the sender is connected to a stream; takes his connection on if it waits.
    bool accept();

    /// Writes some of the bytes to the connection of a stream: how many, in `written`. Nothing: there is no room now.
    /// End: there is nobody any more.
    Sent write(const char* bytes, std::size_t size, std::size_t* written) const;

private:
    FlowSocket(Kind kind, int socket, std::string sender);

    const Kind m_kind;
    int m_socket;
    int m_connection = -1;
    const std::string m_sender;
};

} // namespace ZelkoRecorder
