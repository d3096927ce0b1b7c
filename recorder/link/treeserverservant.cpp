#include <recorder/link/treeserverservant.h>

#include <zelkobase/connection/linkframe.h>
#include <zelkobase/orb/callingpeer.h>
#include <zelkobase/orb/corbacall.h>

#include <QRandomGenerator>

#include <algorithm>
#include <atomic>
#include <future>
#include <iterator>
#include <utility>

namespace ZelkoRecorder {

namespace {

[[noreturn]] void refuse(ZelkoTreeLink::RefusalReason reason, const std::string& text)
{
    throw ZelkoTreeLink::Refused(reason, text.c_str());
}

constexpr const char* noSuchSession = "it does not know this session any more";

ZelkoTreeLink::UserRole toIdl(ZelkoCommon::Role role)
{
    switch (role) {
    case ZelkoCommon::Role::Viewer:
        break;
    case ZelkoCommon::Role::Operator:
        return ZelkoTreeLink::ROLE_OPERATOR;
    case ZelkoCommon::Role::Administrator:
        return ZelkoTreeLink::ROLE_ADMINISTRATOR;
    }
    return ZelkoTreeLink::ROLE_VIEWER;
}

QString toText(const CORBA::String_member& utf8)
{
    return QString::fromUtf8(static_cast<const char*>(utf8));
}

// What a write that waits costs beside its bytes, about.
constexpr std::size_t bytesOfAWait = 256;

// A write on its way to the thread of the tree. It may be destroyed unread.
struct Wait
{
    Wait(std::shared_ptr<LinkSessionRegister> inRegister, ZelkoTreeLink::SessionId ofSession, std::size_t size)
        : sessions(std::move(inRegister))
        , session(ofSession)
        , bytes(size)
    {}
    ~Wait() { end(); }
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;

    void end()
    {
        if (!std::exchange(ended, true)) {
            sessions->endWait(session, bytes);
        }
    }

    const std::shared_ptr<LinkSessionRegister> sessions;
    const ZelkoTreeLink::SessionId session;
    const std::size_t bytes;
    std::promise<LinkWriteVerdict> verdict;
    bool ended = false;
};

} // namespace

LinkSessionRegister::LinkSessionRegister(const TreeLinkServerOptions& options)
    : m_maxSessions(options.maxSessions)
    , m_maxSessionsPerPeer(options.maxSessionsPerPeer)
    , m_maxWaitingBytes(options.maxWaitingWriteBytes)
{}

ZelkoTreeLink::SessionId LinkSessionRegister::enter(const std::string& peer, const LinkUser& user)
{
    const std::lock_guard lock(m_mutex);
    if (!hasRoomFor(peer)) {
        return 0;
    }
    ZelkoTreeLink::SessionId session = 0;
    while (session == 0 || m_sessions.count(session) > 0) {
        session = QRandomGenerator::system()->generate64();
    }
    m_sessions.emplace(session, Session{peer, user, Clock::now()});
    return session;
}

bool LinkSessionRegister::hasRoomFor(const std::string& peer) const
{
    const auto ofPeer = std::count_if(m_sessions.begin(), m_sessions.end(),
                                      [&](const auto& session) { return session.second.peer == peer; });
    return std::ssize(m_sessions) < m_maxSessions && ofPeer < m_maxSessionsPerPeer;
}

void LinkSessionRegister::leave(ZelkoTreeLink::SessionId session)
{
    const std::lock_guard lock(m_mutex);
    m_sessions.erase(session);
}

const LinkSessionRegister::Session* LinkSessionRegister::find(ZelkoTreeLink::SessionId session,
                                                              const std::string& peer) const
{
    const auto found = m_sessions.find(session);
    return found != m_sessions.end() && found->second.peer == peer ? &found->second : nullptr;
}

std::optional<LinkUser> LinkSessionRegister::userOf(ZelkoTreeLink::SessionId session, const std::string& peer) const
{
    const std::lock_guard lock(m_mutex);
    const Session* const found = find(session, peer);
    return found ? std::optional(found->user) : std::nullopt;
}

bool LinkSessionRegister::touch(ZelkoTreeLink::SessionId session, const std::string& peer)
{
    const std::lock_guard lock(m_mutex);
    const Session* const found = find(session, peer);
    if (found) {
        found->lastHeard = Clock::now();
    }
    return found;
}

bool LinkSessionRegister::beginWait(ZelkoTreeLink::SessionId session, std::size_t bytes)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_sessions.find(session);
    if (found == m_sessions.end()) {
        return true; // whoever ends the wait tells that the session is gone
    }
    std::size_t& waiting = found->second.waitingBytes;
    if (waiting > 0 && waiting + bytes > m_maxWaitingBytes) {
        return false;
    }
    waiting += bytes;
    return true;
}

void LinkSessionRegister::endWait(ZelkoTreeLink::SessionId session, std::size_t bytes)
{
    const std::lock_guard lock(m_mutex);
    if (const auto found = m_sessions.find(session); found != m_sessions.end()) {
        found->second.waitingBytes -= bytes;
    }
}

std::vector<ZelkoTreeLink::SessionId> LinkSessionRegister::silentFor(std::chrono::milliseconds silence) const
{
    const std::lock_guard lock(m_mutex);
    std::vector<ZelkoTreeLink::SessionId> result;
    for (const auto& [id, session] : m_sessions) {
        if (Clock::now() - session.lastHeard > silence) {
            result.push_back(id);
        }
    }
    return result;
}

TreeServerServant::TreeServerServant(std::shared_ptr<LinkSessionRegister> sessions,
                                     std::shared_ptr<TreeThreadGate> gate, Handlers handlers,
                                     TreeLinkServer::Authenticate authenticate, const TreeLinkServerOptions& options)
    : m_sessions(std::move(sessions))
    , m_gate(std::move(gate))
    , m_handlers(std::move(handlers))
    , m_authenticate(std::move(authenticate))
    , m_options(options)
{}

ZelkoTreeLink::SessionId TreeServerServant::attach(CORBA::ULong version, const ZelkoTreeLink::Credentials& who,
                                                   ZelkoTreeLink::Subscriber_ptr client)
{
    if (version != ZelkoTreeLink::PROTOCOL_VERSION) {
        refuse(ZelkoTreeLink::REFUSED_VERSION, "it speaks another version of the link");
    }
    if (CORBA::is_nil(client)) {
        refuse(ZelkoTreeLink::REFUSED_CREDENTIALS, "there is nobody to call back");
    }
    const LinkUser user = admit(who);
    const ZelkoTreeLink::SessionId session = m_sessions->enter(ZelkoCommon::callingPeer(), user);
    if (session == 0) {
        refuse(ZelkoTreeLink::REFUSED_FULL, "it has as many clients as it takes");
    }
    ZelkoCommon::setCallTimeout(client, m_options.deliverTimeout);
    const ZelkoTreeLink::Subscriber_var kept = ZelkoTreeLink::Subscriber::_duplicate(client);
    m_gate->post([handler = m_handlers.attached, session, user, kept] { handler(session, user, kept); });
    return session;
}

LinkUser TreeServerServant::admit(const ZelkoTreeLink::Credentials& who) const
{
    const QString name = toText(who.user);
    if (!m_authenticate) {
        return {name};
    }
    const LinkAdmission admission = m_authenticate(name, toText(who.password), ZelkoCommon::callingPeer());
    switch (admission.outcome) {
    case LinkAdmission::Outcome::Admitted:
        return {name, admission.role};
    case LinkAdmission::Outcome::Busy:
        refuse(ZelkoTreeLink::REFUSED_BUSY, "it has too many passwords to check");
    case LinkAdmission::Outcome::TooManyTries:
        refuse(ZelkoTreeLink::REFUSED_CREDENTIALS,
               "access is denied for a while, as too many wrong passwords came from here");
    case LinkAdmission::Outcome::Denied:
        break;
    }
    refuse(ZelkoTreeLink::REFUSED_CREDENTIALS, "access is denied: user or password are wrong");
}

ZelkoTreeLink::UserRole TreeServerServant::roleOf(ZelkoTreeLink::SessionId session)
{
    const auto user = m_sessions->userOf(session, ZelkoCommon::callingPeer());
    if (!user) {
        refuse(ZelkoTreeLink::REFUSED_SESSION, noSuchSession);
    }
    return toIdl(user->role);
}

void TreeServerServant::write(ZelkoTreeLink::SessionId session, const ZelkoTreeLink::Batch& commands,
                              ZelkoTreeLink::Checksum check)
{
    if (!m_sessions->touch(session, ZelkoCommon::callingPeer())) {
        refuse(ZelkoTreeLink::REFUSED_SESSION, noSuchSession);
    }
    if (commands.length() == 0) {
        return;
    }
    std::string batch(reinterpret_cast<const char*>(commands.get_buffer()), commands.length());
    if (ZelkoCommon::link::checksum(batch) != check) {
        refuse(ZelkoTreeLink::REFUSED_DAMAGED, "a batch was damaged on its way");
    }
    const LinkWriteVerdict verdict = writeOnTreeThread(session, std::move(batch));
    if (verdict.refusal) {
        refuse(*verdict.refusal, verdict.why);
    }
}

void TreeServerServant::detach(ZelkoTreeLink::SessionId session)
{
    if (m_sessions->touch(session, ZelkoCommon::callingPeer())) {
        m_gate->post([handler = m_handlers.detached, session] { handler(session); });
    }
}

// Work that the tree's thread never comes to is destroyed with its promise, which ends the wait. A write belongs to
// whoever claims it first: the thread of the tree, which judges it, or the end of the wait, after which nothing of it
// is done, so that the client may send it again. Until the thread passes over it, its bytes count as waiting.
LinkWriteVerdict TreeServerServant::writeOnTreeThread(ZelkoTreeLink::SessionId session, std::string batch)
{
    const std::size_t bytes = batch.size() + bytesOfAWait;
    if (!m_sessions->beginWait(session, bytes)) {
        return {ZelkoTreeLink::REFUSED_BUSY, "it has not come yet to what was written before"};
    }
    auto wait = std::make_shared<Wait>(m_sessions, session, bytes);
    auto verdict = wait->verdict.get_future();
    const auto claim = std::make_shared<std::atomic_flag>();
    m_gate->post([handler = m_handlers.written, session, batch = std::move(batch), wait = std::move(wait), claim] {
        if (claim->test_and_set()) {
            return;
        }
        LinkWriteVerdict result = handler(session, batch);
        wait->end();
        wait->verdict.set_value(std::move(result));
    });
    try {
        if (verdict.wait_for(m_options.writeTimeout) != std::future_status::ready && !claim->test_and_set()) {
            return {ZelkoTreeLink::REFUSED_BUSY, "it does not come to what is written"};
        }
        return verdict.get();
    } catch (const std::future_error&) {
        return {ZelkoTreeLink::REFUSED_SESSION, "it is shutting down"};
    }
}

} // namespace ZelkoRecorder
