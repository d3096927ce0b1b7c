#include <zelkobase/connection/linksubscriber_p.h>

#include <zelkobase/connection/linkframe.h>

#include <utility>

namespace ZelkoCommon {

namespace {

// A server sends one batch at a time, so that there is one in need of it.
constexpr int maxWaiting = 2;

} // namespace

// Batches are taken over one at a time and in order.
class LinkSubscriber::Turn
{
public:
    Turn(LinkSubscriber& subscriber, ZelkoTreeLink::SessionId session, CORBA::ULong number)
        : m_subscriber(subscriber)
    {
        if (!m_subscriber.beginTurn(session, number)) {
            throw ZelkoTreeLink::Refused(ZelkoTreeLink::REFUSED_SESSION, "no such session, or a batch out of turn");
        }
    }
    ~Turn() { m_subscriber.endTurn(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    LinkSubscriber& m_subscriber;
};

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

void LinkSubscriber::end()
{
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_sessionKnown.notify_all();
}

void LinkSubscriber::deliver(ZelkoTreeLink::SessionId session, CORBA::ULong number,
                             const ZelkoTreeLink::Batch& commands, ZelkoTreeLink::Checksum check)
{
    const Turn turn(*this, session, number);
    std::string bytes(reinterpret_cast<const char*>(commands.get_buffer()), commands.length());
    if (link::checksum(bytes) != check) {
        throw ZelkoTreeLink::Refused(ZelkoTreeLink::REFUSED_DAMAGED, "a batch was damaged on its way");
    }
    if (!m_queue->put(m_connection, std::move(bytes), m_patience)) {
        throw ZelkoTreeLink::Refused(ZelkoTreeLink::REFUSED_SESSION, "the client does not take anything more");
    }
}

bool LinkSubscriber::beginTurn(ZelkoTreeLink::SessionId session, CORBA::ULong number)
{
    std::unique_lock lock(m_mutex);
    waitForSession(lock);
    if (m_session == 0 || m_ended || m_busy || session != m_session || number != m_nextNumber) {
        return false;
    }
    ++m_nextNumber;
    m_busy = true;
    return true;
}

void LinkSubscriber::waitForSession(std::unique_lock<std::mutex>& lock)
{
    if (m_waiting < maxWaiting) {
        ++m_waiting;
        m_sessionKnown.wait_for(lock, m_patience, [this] { return m_session != 0 || m_ended; });
        --m_waiting;
    }
}

void LinkSubscriber::endTurn()
{
    const std::lock_guard lock(m_mutex);
    m_busy = false;
}

} // namespace ZelkoCommon
