#pragma once

#include <recorder/link/treelinkserver.h>
#include <recorder/link/treethreadgate.h>

#include <zelkoidl/treelink.hh>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace ZelkoRecorder {

/// What the threads of the ORB and the thread of the tree both know of the sessions.
class LinkSessionRegister
{
public:
    explicit LinkSessionRegister(const TreeLinkServerOptions& options);

    /// A number for a new session that nobody can guess, of a client at the address `peer` that acts for `user`; 0 when
    /// there is no room.
    ZelkoTreeLink::SessionId enter(const std::string& peer, const LinkUser& user = {});
    void leave(ZelkoTreeLink::SessionId session);

    /// For whom a session's client acts; nothing when there is no such session of a client at the address `peer`: who
    /// overheard a number does not become somebody else by it.
    std::optional<LinkUser> userOf(ZelkoTreeLink::SessionId session, const std::string& peer) const;

    /// Notes a sign of life; false when there is no such session of a client at the address `peer`.
    bool touch(ZelkoTreeLink::SessionId session, const std::string& peer);

    /// Notes that a write waits for the thread of the tree; false when too much of the session waits already. A session
    /// of which nothing waits may have a write of any size waiting.
    bool beginWait(ZelkoTreeLink::SessionId session, std::size_t bytes);
    void endWait(ZelkoTreeLink::SessionId session, std::size_t bytes);

    /// Sessions of which nothing was heard for longer than `silence`.
    std::vector<ZelkoTreeLink::SessionId> silentFor(std::chrono::milliseconds silence) const;

private:
    using Clock = std::chrono::steady_clock;

    struct Session
    {
        std::string peer;
        LinkUser user;
        mutable Clock::time_point lastHeard;
        std::size_t waitingBytes = 0;
    };

    bool hasRoomFor(const std::string& peer) const; // with the mutex held, as the next one
    const Session* find(ZelkoTreeLink::SessionId session, const std::string& peer) const;

    const int m_maxSessions;
    const int m_maxSessionsPerPeer;
    const std::size_t m_maxWaitingBytes;
    mutable std::mutex m_mutex;
    std::unordered_map<ZelkoTreeLink::SessionId, Session> m_sessions;
};

/// What a write leads to.
struct LinkWriteVerdict
{
    std::optional<ZelkoTreeLink::RefusalReason> refusal; ///< none when everything was done
    std::string why;                                     ///< for people
};

/// The recorder's end of the tree link as the ORB sees it. Served on threads of the ORB.
class TreeServerServant final : public POA_ZelkoTreeLink::TreeServer, public PortableServer::RefCountServantBase
{
public:
    /// What it passes on to, on the thread of the tree.
    struct Handlers
    {
        std::function<void(ZelkoTreeLink::SessionId, const LinkUser& user, ZelkoTreeLink::Subscriber_ptr)> attached;
        std::function<LinkWriteVerdict(ZelkoTreeLink::SessionId, const std::string& batch)> written;
        std::function<void(ZelkoTreeLink::SessionId)> detached;
    };

    TreeServerServant(std::shared_ptr<LinkSessionRegister> sessions, std::shared_ptr<TreeThreadGate> gate,
                      Handlers handlers, TreeLinkServer::Authenticate authenticate,
                      const TreeLinkServerOptions& options);

    ZelkoTreeLink::SessionId attach(CORBA::ULong version, const ZelkoTreeLink::Credentials& who,
                                    ZelkoTreeLink::Subscriber_ptr client) override;
    ZelkoTreeLink::UserRole roleOf(ZelkoTreeLink::SessionId session) override;
    void write(ZelkoTreeLink::SessionId session, const ZelkoTreeLink::Batch& commands,
               ZelkoTreeLink::Checksum check) override;
    void detach(ZelkoTreeLink::SessionId session) override;

private:
    LinkUser admit(const ZelkoTreeLink::Credentials& who) const;
    LinkWriteVerdict writeOnTreeThread(ZelkoTreeLink::SessionId session, std::string batch);

    const std::shared_ptr<LinkSessionRegister> m_sessions;
    const std::shared_ptr<TreeThreadGate> m_gate;
    const Handlers m_handlers;
    const TreeLinkServer::Authenticate m_authenticate;
    const TreeLinkServerOptions m_options;
};

} // namespace ZelkoRecorder
