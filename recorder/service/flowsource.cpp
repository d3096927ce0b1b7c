#include <recorder/service/flowsource.h>

#include <zelkobase/orb/hostaddress.h>

#include <netinet/in.h>

#include <limits>
#include <utility>

namespace ZelkoRecorder {

using ManagerPtr = QD_ZLK::IF_ZLK_c_ChanMan_ptr;

namespace {

// Those below are not for whoever calls from outside to open.
constexpr CORBA::Long lowestPort = 1024;

std::string addressOf(CORBA::Long number)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(static_cast<std::uint32_t>(number));
    return ZelkoCommon::plainAddress(reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

bool mayListenAt(CORBA::Long port)
{
    return port >= lowestPort && port <= std::numeric_limits<quint16>::max();
}

} // namespace

FlowSource::FlowSource(std::string peer)
    : m_sender(std::move(peer))
{}

// An older manager does not know the newer operation, or has it only to say so.
bool FlowSource::connect(ManagerPtr manager, const std::string& channelId)
{
    try {
        return connectNewer(manager, channelId);
    } catch (const CORBA::BAD_OPERATION&) {
    } catch (const CORBA::NO_IMPLEMENT&) {
    } catch (const Manager::exChanMan& refusal) {
        if (refusal.code != Manager::CHANMAN_NOT_SUPPORTED) {
            throw;
        }
    }
    return connectOlder(manager, channelId);
}

// A manager that names no endpoint sends datagrams of stream 0 from where it called.
bool FlowSource::connectNewer(ManagerPtr manager, const std::string& channelId)
{
    QD_ZLK::DataEndpointNGSeq_var endpoints;
    QD_ZLK::LongSeq_var streams;
    const bool agrees = manager->connectForRecordNG(channelId.c_str(), endpoints, streams);
    m_isUsable = agrees;
    if (agrees && endpoints->length() > 0) {
        const QD_ZLK::DataEndpointNG& endpoint = endpoints[0];
        take(endpoint.kind, static_cast<const char*>(endpoint.address), endpoint.streamId);
    }
    return agrees;
}

// Without an endpoint nobody would know where the data arrive.
bool FlowSource::connectOlder(ManagerPtr manager, const std::string& channelId)
{
    m_isOlder = true;
    QD_ZLK::DataEndpointSeq_var endpoints;
    QD_ZLK::LongSeq_var streams;
    const bool agrees = manager->connectForRecord(channelId.c_str(), endpoints, streams);
    if (agrees && endpoints->length() > 0) {
        const QD_ZLK::DataEndpoint& endpoint = endpoints[0];
        take(endpoint.kind, endpoint.address == 0 ? std::string() : addressOf(endpoint.address), endpoint.streamId);
        m_isUsable = m_isUsable && mayListenAt(endpoint.portNumber);
        m_port = m_isUsable ? static_cast<quint16>(endpoint.portNumber) : quint16{0};
    }
    return agrees;
}

void FlowSource::take(QD_ZLK::EndpointKind kind, const std::string& address, CORBA::LongLong stream)
{
    const bool isOffered = kind == QD_ZLK::ENDPOINT_TCP || kind == QD_ZLK::ENDPOINT_UDP;
    m_kind = kind == QD_ZLK::ENDPOINT_TCP ? FlowSocket::Kind::Stream : FlowSocket::Kind::Datagrams;
    m_stream = static_cast<quint64>(stream);
    m_sender = address.empty() ? m_sender : ZelkoCommon::plainAddress(address);
    m_isUsable = isOffered && !m_sender.empty();
}

void FlowSource::start(ManagerPtr manager, const std::string& channelId, const std::string& address, quint16 port) const
{
    if (m_isOlder) {
        manager->startDataFlow(channelId.c_str());
    } else {
        manager->startDataFlowNG(channelId.c_str(), address.c_str(), port);
    }
}

} // namespace ZelkoRecorder
