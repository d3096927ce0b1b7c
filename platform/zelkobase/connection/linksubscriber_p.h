#pragma once

#include <zelkobase/connection/linkqueue.h>

#include <zelkoidl/treelink.hh>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace ZelkoCommon {

/// The object that a server calls back: puts the batches of one session into the queue and touches nothing else. Served
/// on threads of the ORB.
class LinkSubscriber final : public POA_ZelkoTreeLink::Subscriber, public PortableServer::RefCountServantBase
{
public:
    LinkSubscriber(std::shared_ptr<LinkQueue> queue, std::uint64_t connection, std::chrono::milliseconds patience);

    /// The session that `attach` gave. Batches that come before wait for it: whoever does not know it is not our
    /// server. Of those that wait there are few, since each holds a thread of the ORB.
    void setSession(ZelkoTreeLink::SessionId session);

    /// There will be no session, or none any more: who waits for it waits no longer.
    void end();

    void deliver(ZelkoTreeLink::SessionId session, CORBA::ULong number, const ZelkoTreeLink::Batch& commands,
                 ZelkoTreeLink::Checksum check) override;

private:
    class Turn;

    bool beginTurn(ZelkoTreeLink::SessionId session, CORBA::ULong number);
    void waitForSession(std::unique_lock<std::mutex>& lock);
    void endTurn();

    const std::shared_ptr<LinkQueue> m_queue;
    const std::uint64_t m_connection;
    const std::chrono::milliseconds m_patience;

    std::mutex m_mutex;
    std::condition_variable m_sessionKnown;
    ZelkoTreeLink::SessionId m_session = 0; // 0: not known yet
    CORBA::ULong m_nextNumber = 0;
    int m_waiting = 0;   // calls that wait for the session
    bool m_busy = false; // a batch is being taken over
    bool m_ended = false;
};

} // namespace ZelkoCommon
