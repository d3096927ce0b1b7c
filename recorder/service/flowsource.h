#pragma once

#include <recorder/service/flowsocket.h>

#include <zelkoidl/recorderservice.hh>

#include <string>

namespace ZelkoRecorder {

/// Where the data of a channel come from, as its manager says. A newer manager is told where to send them. An older one
/// has operations in which nobody could tell it: it says at which port of the recorder its data will arrive.
///
/// One thread at a time; what calls the manager blocks, and throws what the ORB and the manager throw.
class FlowSource
{
public:
    using Manager = QD_ZLK::IF_ZLK_c_ChanMan;

    /// Data come from `peer`, an address as `plainAddress` has it, unless the manager names another one.
    explicit FlowSource(std::string peer);

    /// Has the manager connect, by its newer operation if it has that one. False if it declines.
    bool connect(Manager::_ptr_type manager, const std::string& channelId);

    /// Whether what it said when it connected can be used.
    bool isUsable() const { return m_isUsable; }

    /// Has the manager that has connected send its data: a newer one to this address and port.
    void start(Manager::_ptr_type manager, const std::string& channelId, const std::string& address,
               quint16 port) const;

    FlowSocket::Kind kind() const { return m_kind; }
    const std::string& sender() const { return m_sender; }
    quint64 stream() const { return m_stream; }

    /// At which the data will arrive; 0: at any that start() names.
    quint16 port() const { return m_port; }

private:
    bool connectNewer(Manager::_ptr_type manager, const std::string& channelId);
    bool connectOlder(Manager::_ptr_type manager, const std::string& channelId);
    void take(QD_ZLK::EndpointKind kind, const std::string& address, CORBA::LongLong stream);

    std::string m_sender;
    FlowSocket::Kind m_kind = FlowSocket::Kind::Datagrams;
    quint64 m_stream = 0;
    quint16 m_port = 0;
    bool m_isOlder = false;
    bool m_isUsable = false;
};

} // namespace ZelkoRecorder
