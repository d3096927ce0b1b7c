#include <zelkobase/connection/linksubscriber_p.h>

#include <zelkobase/connection/linkframe.h>

#include <utility>

namespace ZelkoCommon {

LinkSubscriber::LinkSubscriber(std::shared_ptr<LinkQueue> queue, std::uint64_t connection,
                               std::chrono::milliseconds patience)
    : m_queue(std::move(queue))
    , m_connection(connection)
    , m_patience(patience)
{}

void LinkSubscriber::setSession(ZelkoTreeLink::SessionId session)
{
    const std::lock_guard lock(m_mutex);
    m_session = session;
    m_sessionKnown.notify_all();
}

void LinkSubscriber::deliver(ZelkoTreeLink::SessionId session, CORBA::ULong number,
                             const ZelkoTreeLink::Batch& commands, ZelkoTreeLink::Checksum check)
{
    if (!takeTurn(session, number)) {
        throw ZelkoTreeLink::Refused(ZelkoTreeLink::REFUSED_SESSION, "no such session, or a batch out of turn");
    }
    std::string bytes(reinterpret_cast<const char*>(commands.get_buffer()), commands.length());
    if (link::checksum(bytes) != check) {
        throw ZelkoTreeLink::Refused(ZelkoTreeLink::REFUSED_DAMAGED, "a batch was damaged on its way");
    }
    if (!m_queue->put(m_connection, std::move(bytes), m_patience)) {
        throw ZelkoTreeLink::Refused(ZelkoTreeLink::REFUSED_SESSION, "the client does not take anything more");
    }
}

bool LinkSubscriber::takeTurn(ZelkoTreeLink::SessionId session, CORBA::ULong number)
{
    std::unique_lock lock(m_mutex);
    m_sessionKnown.wait_for(lock, m_patience, [this] { return m_session != 0; });
    if (m_session == 0 || session != m_session || number != m_nextNumber) {
        return false;
    }
    ++m_nextNumber;
    return true;
}

} // namespace ZelkoCommon
