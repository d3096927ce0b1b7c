#include <recorder/link/treeserverservant.h>

#include <zelkobase/connection/linkframe.h>
#include <zelkobase/orb/corbacall.h>

#include <QRandomGenerator>

#include <future>
#include <utility>

namespace ZelkoRecorder {

namespace {

[[noreturn]] void refuse(ZelkoTreeLink::RefusalReason reason, const std::string& text)
{
    throw ZelkoTreeLink::Refused(reason, text.c_str());
}

QString toText(const CORBA::String_member& utf8)
{
    return QString::fromUtf8(static_cast<const char*>(utf8));
}

} // namespace

LinkSessionRegister::LinkSessionRegister(int maxSessions)
    : m_maxSessions(static_cast<std::size_t>(maxSessions))
{}

ZelkoTreeLink::SessionId LinkSessionRegister::enter()
{
    const std::lock_guard lock(m_mutex);
    if (m_lastHeard.size() >= m_maxSessions) {
        return 0;
    }
    ZelkoTreeLink::SessionId session = 0;
    while (session == 0 || m_lastHeard.count(session) > 0) {
        session = QRandomGenerator::system()->generate64();
    }
    m_lastHeard.emplace(session, Clock::now());
    return session;
}

void LinkSessionRegister::leave(ZelkoTreeLink::SessionId session)
{
    const std::lock_guard lock(m_mutex);
    m_lastHeard.erase(session);
}

bool LinkSessionRegister::touch(ZelkoTreeLink::SessionId session)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_lastHeard.find(session);
    if (found == m_lastHeard.end()) {
        return false;
    }
    found->second = Clock::now();
    return true;
}

std::vector<ZelkoTreeLink::SessionId> LinkSessionRegister::silentFor(std::chrono::milliseconds silence) const
{
    const std::lock_guard lock(m_mutex);
    std::vector<ZelkoTreeLink::SessionId> result;
    for (const auto& [session, lastHeard] : m_lastHeard) {
        if (Clock::now() - lastHeard > silence) {
            result.push_back(session);
        }
    }
    return result;
}

TreeThreadGate::TreeThreadGate(std::function<void()> wakeUp)
    : m_wakeUp(std::move(wakeUp))
{}

bool TreeThreadGate::post(std::function<void()> work)
{
    const std::lock_guard lock(m_mutex);
    if (!m_wakeUp) {
        return false;
    }
    m_work.push_back(std::move(work));
    if (m_work.size() == 1) {
        m_wakeUp();
    }
    return true;
}

// Piece by piece, so that what is done keeps its order even when a piece runs an event loop of its own.
void TreeThreadGate::run()
{
    while (const auto work = next()) {
        work();
    }
}

std::function<void()> TreeThreadGate::next()
{
    const std::lock_guard lock(m_mutex);
    if (m_work.empty()) {
        return nullptr;
    }
    auto work = std::move(m_work.front());
    m_work.pop_front();
    return work;
}

void TreeThreadGate::close()
{
    std::deque<std::function<void()>> forgotten; // destroyed without the mutex
    const std::lock_guard lock(m_mutex);
    m_wakeUp = nullptr;
    forgotten.swap(m_work);
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
    const QString user = toText(who.user);
    if (m_authenticate && !m_authenticate(user, toText(who.password))) {
        refuse(ZelkoTreeLink::REFUSED_CREDENTIALS, "user or password are wrong");
    }
    const ZelkoTreeLink::SessionId session = m_sessions->enter();
    if (session == 0) {
        refuse(ZelkoTreeLink::REFUSED_FULL, "it has as many clients as it takes");
    }
    ZelkoCommon::setCallTimeout(client, m_options.deliverTimeout);
    const ZelkoTreeLink::Subscriber_var kept = ZelkoTreeLink::Subscriber::_duplicate(client);
    m_gate->post([handler = m_handlers.attached, session, user, kept] { handler(session, user, kept); });
    return session;
}

void TreeServerServant::write(ZelkoTreeLink::SessionId session, const ZelkoTreeLink::Batch& commands,
                              ZelkoTreeLink::Checksum check)
{
    if (!m_sessions->touch(session)) {
        refuse(ZelkoTreeLink::REFUSED_SESSION, "it does not know this session any more");
    }
    if (commands.length() == 0) {
        return;
    }
    std::string frames(reinterpret_cast<const char*>(commands.get_buffer()), commands.length());
    if (ZelkoCommon::link::checksum(frames) != check) {
        refuse(ZelkoTreeLink::REFUSED_DAMAGED, "a batch was damaged on its way");
    }
    const LinkWriteVerdict verdict = writeOnTreeThread(session, std::move(frames));
    if (verdict.refusal) {
        refuse(*verdict.refusal, verdict.why);
    }
}

void TreeServerServant::detach(ZelkoTreeLink::SessionId session)
{
    if (m_sessions->touch(session)) {
        m_gate->post([handler = m_handlers.detached, session] { handler(session); });
    }
}

// Work that the tree's thread never comes to is destroyed with its promise, which ends the wait. A write that the
// thread has not come to in time stays in its turn; where it turns out not to be allowed, the client gets the value
// back then.
LinkWriteVerdict TreeServerServant::writeOnTreeThread(ZelkoTreeLink::SessionId session, std::string frames)
{
    auto promise = std::make_shared<std::promise<LinkWriteVerdict>>();
    auto verdict = promise->get_future();
    m_gate->post([handler = m_handlers.written, session, bytes = std::move(frames), promise = std::move(promise)] {
        promise->set_value(handler(session, bytes));
    });
    try {
        if (verdict.wait_for(m_options.writeTimeout) == std::future_status::ready) {
            return verdict.get();
        }
        return {};
    } catch (const std::future_error&) {
        return {ZelkoTreeLink::REFUSED_SESSION, "it is shutting down"};
    }
}

} // namespace ZelkoRecorder
