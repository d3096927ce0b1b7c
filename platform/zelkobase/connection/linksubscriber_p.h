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
    /// server.
    void setSession(ZelkoTreeLink::SessionId session);

    void deliver(ZelkoTreeLink::SessionId session, CORBA::ULong number, const ZelkoTreeLink::Batch& commands,
                 ZelkoTreeLink::Checksum check) override;

private:
    bool takeTurn(ZelkoTreeLink::SessionId session, CORBA::ULong number);

    const std::shared_ptr<LinkQueue> m_queue;
    const std::uint64_t m_connection;
    const std::chrono::milliseconds m_patience;

    std::mutex m_mutex;
    std::condition_variable m_sessionKnown;
    ZelkoTreeLink::SessionId m_session = 0; // 0: not known yet
    CORBA::ULong m_nextNumber = 0;
};

} // namespace ZelkoCommon
