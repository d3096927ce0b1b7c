#include <zelkobase/connection/linkworker_p.h>

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <zelkobase/connection/linkframe.h>
#include <zelkobase/connection/linksubscriber_p.h>
#include <zelkobase/orb/callbreaker.h>
#include <zelkobase/orb/callingsession.h>
#include <zelkobase/orb/corbacall.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/orb/tlsrefusal.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace ZelkoCommon {
namespace {

// One call carries no more than this; the rest follows with the next.
constexpr std::size_t maxCallBytes = 1024 * 1024;

// Room for the largest write behind another one of its kind. Who has more waiting writes to a server that takes
// nothing.
constexpr std::size_t maxOutgoingBytes = 2 * (link::frameHeaderSize + link::maxWritePayload);

// A server that does not answer finds out by itself that the client has left.
constexpr std::chrono::milliseconds goodbyeTimeout{1000};

void traceWarning(const QString& text, int line)
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceWarning)) {
        _Q_Trace(text, __FILE__, line);
    }
}

Role toRole(ZelkoTreeLink::UserRole role)
{
    switch (role) {
    case ZelkoTreeLink::ROLE_OPERATOR:
        return Role::Operator;
    case ZelkoTreeLink::ROLE_ADMINISTRATOR:
        return Role::Administrator;
    default:
        return Role::Viewer;
    }
}

bool isDenial(const CORBA::Exception& exception)
{
    const auto* const refused = ZelkoTreeLink::Refused::_downcast(&exception);
    return refused && refused->reason == ZelkoTreeLink::REFUSED_CREDENTIALS;
}

ZelkoTreeLink::Batch toBatch(const std::string& bytes)
{
    ZelkoTreeLink::Batch batch;
    batch.length(static_cast<CORBA::ULong>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), batch.get_buffer());
    return batch;
}

} // namespace

struct LinkWorker::Connection
{
    ZelkoTreeLink::TreeServer_var server;
    ZelkoTreeLink::SessionId session = 0;
    std::uint64_t number = 0;
    LinkSubscriber* subscriber = nullptr; // owned by the ORB until it is deactivated
    PortableServer::ObjectId_var subscriberId;
    CallingSession::Pass pass; // of calls to the recorder's service
};

LinkWorker::LinkWorker(Orb& orb, const ZelkoConfiguration::SubSystem& subSystem, const LinkOptions& options,
                       std::shared_ptr<LinkQueue> queue)
    : m_orb(orb)
    , m_subSystem(subSystem)
    , m_options(options)
    , m_queue(std::move(queue))
    , m_outgoing(maxCallBytes)
    , m_credentials(m_subSystem.hasCredentials() ? m_subSystem.credentials : options.credentials)
    , m_thread([this] { run(); })
{}

LinkWorker::~LinkWorker()
{
    stop();
    m_thread.join();
}

void LinkWorker::stop()
{
    const std::lock_guard lock(m_mutex);
    if (!std::exchange(m_stopping, true)) {
        m_lastWrite = std::chrono::steady_clock::now() + m_options.callTimeout;
    }
    m_somethingToDo.notify_all();
}

QString LinkWorker::write(const std::string& frame)
{
    const std::lock_guard lock(m_mutex);
    if (!m_serving || m_userChanges) {
        return {};
    }
    if (frame.size() > link::frameHeaderSize + link::maxWritePayload) {
        return QStringLiteral("it is too large");
    }
    if (m_outgoing.bytes() + frame.size() > maxOutgoingBytes) {
        return QStringLiteral("the recorder server has not taken yet what was written before");
    }
    m_outgoing.append(std::make_shared<const std::string>(frame));
    m_somethingToDo.notify_all();
    return {};
}

void LinkWorker::askFor(std::uint32_t handle)
{
    const std::lock_guard lock(m_mutex);
    if (m_serving) {
        m_questions.insert(handle);
        m_somethingToDo.notify_all();
    }
}

bool LinkWorker::setCredentials(const LinkCredentials& credentials)
{
    const std::lock_guard lock(m_mutex);
    if (credentials == m_credentials) {
        return false;
    }
    m_credentials = credentials;
    m_userChanges = true;
    m_role.reset();
    m_denied = false;
    m_somethingToDo.notify_all();
    return true;
}

void LinkWorker::drop(const std::string& reason)
{
    const std::lock_guard lock(m_mutex);
    m_dropReason = reason;
    m_somethingToDo.notify_all();
}

void LinkWorker::run()
{
    auto retry = m_options.firstRetry;
    while (!isStopping()) {
        const auto begin = std::chrono::steady_clock::now();
        if (const auto connection = attach()) {
            serve(*connection);
            detach(*connection);
            // Whoever takes a client and loses it at once, again and again, is not worth its haste.
            if (std::chrono::steady_clock::now() - begin > m_options.lastRetry) {
                retry = m_options.firstRetry;
            }
        }
        const bool anotherUser = waitForRetry(isDenied() ? std::max(retry, m_options.deniedRetry) : retry);
        retry = anotherUser ? m_options.firstRetry : std::min(retry * 2, m_options.lastRetry);
    }
}

bool LinkWorker::isStopping()
{
    const std::lock_guard lock(m_mutex);
    return m_stopping;
}

std::optional<LinkWorker::Connection> LinkWorker::attach()
{
    Connection connection;
    connection.number = m_queue->open();
    connection.subscriber = new LinkSubscriber(m_queue, connection.number, m_options.patience);
    const PortableServer::ServantBase_var guard(connection.subscriber);
    takeTlsRefusal(); // of a connection before
    CallBreaker breaker;
    const CallBreaker::Scope scope(breaker);
    try {
        const CORBA::Object_var object =
            m_orb.remoteObject(m_subSystem.host, m_subSystem.port, ZelkoTreeLink::OBJECT_KEY);
        if (CORBA::is_nil(object)) {
            m_queue->reportFailure("there can be no such host or port");
            return std::nullopt;
        }
        connection.server = ZelkoTreeLink::TreeServer::_unchecked_narrow(object);
        setCallTimeout(connection.server, m_options.callTimeout);
        connection.subscriberId = m_orb.rootPoa()->activate_object(connection.subscriber);
        const ZelkoTreeLink::Subscriber_var self = connection.subscriber->_this();
        const LinkCredentials credentials = takeCredentials();
        const ZelkoTreeLink::Credentials who{credentials.user.toUtf8().constData(),
                                             credentials.password.toUtf8().constData()};
        connection.session = connection.server->attach(ZelkoTreeLink::PROTOCOL_VERSION, who, self);
        enter(connection);
        return connection;
    } catch (const CORBA::Exception& exception) {
        if (CORBA::SystemException::_downcast(&exception)) {
            breaker.breakCalls(); // what was agreed on once for this connection may be what is wrong; another is tried
        }
        noteDenial(isDenial(exception));
        deactivate(connection);
        m_queue->reportFailure(explain(exception), isDenial(exception));
        return std::nullopt;
    }
}

LinkCredentials LinkWorker::takeCredentials()
{
    const std::lock_guard lock(m_mutex);
    m_userChanges = false;
    return m_credentials;
}

// No batch is passed on before the session is known, so whoever hears of the connection has all that belongs to it.
void LinkWorker::enter(Connection& connection)
{
    connection.pass = CallingSession::Pass(connection.session, CallingSession::lastCalledAddress());
    noteRole(toRole(connection.server->roleOf(connection.session)));
    noteDenial(false);
    {
        const std::lock_guard lock(m_mutex);
        m_serving = true;
        m_dropReason.clear();
        forgetOutgoing();
    }
    connection.subscriber->setSession(connection.session);
}

// Of a user who has been replaced meanwhile nobody wants to know it.
void LinkWorker::noteRole(Role role)
{
    const std::lock_guard lock(m_mutex);
    if (!m_userChanges) {
        m_role = role;
    }
}

void LinkWorker::noteDenial(bool isDenied)
{
    const std::lock_guard lock(m_mutex);
    m_denied = isDenied && !m_userChanges;
}

std::optional<Role> LinkWorker::role()
{
    const std::lock_guard lock(m_mutex);
    return m_role;
}

bool LinkWorker::isDenied()
{
    const std::lock_guard lock(m_mutex);
    return m_denied;
}

// Ends with the connection, whoever ended it.
void LinkWorker::serve(const Connection& connection)
{
    std::string reason;
    try {
        auto batch = nextWrite();
        while (batch && deliver(connection, *batch)) {
            batch = nextWrite();
        }
        const std::lock_guard lock(m_mutex);
        reason = std::exchange(m_dropReason, {});
    } catch (const CORBA::Exception& exception) {
        reason = explain(exception);
    }
    {
        const std::lock_guard lock(m_mutex);
        m_serving = false;
        forgetOutgoing();
    }
    m_queue->close(connection.number, reason);
}

// A server that is busy is given the same again until it takes it. False when the connection is to end before.
bool LinkWorker::deliver(const Connection& connection, const std::string& batch)
{
    if (send(connection, batch)) {
        return true;
    }
    traceWarning(QStringLiteral("LinkWorker: %1 is busy, a write waits").arg(m_subSystem.name), __LINE__);
    while (waitToRepeat()) {
        if (send(connection, batch)) {
            return true;
        }
    }
    return false;
}

// False when the server is busy. A write that is not allowed is no reason to part: the server keeps its values and
// sends them again.
bool LinkWorker::send(const Connection& connection, const std::string& batch)
{
    try {
        connection.server->write(connection.session, toBatch(batch), link::checksum(batch));
    } catch (const ZelkoTreeLink::Refused& refused) {
        if (refused.reason == ZelkoTreeLink::REFUSED_BUSY) {
            return false;
        }
        if (refused.reason != ZelkoTreeLink::REFUSED_BATCH) {
            throw;
        }
        m_queue->reportRefusal(connection.number, static_cast<const char*>(refused.text));
        traceWarning(QStringLiteral("LinkWorker: %1 refused a write: %2")
                         .arg(m_subSystem.name, QString::fromUtf8(static_cast<const char*>(refused.text))),
                     __LINE__);
    }
    return true;
}

// A server that is gone needs not be told; one that is there frees what it keeps for this client.
void LinkWorker::detach(const Connection& connection)
{
    deactivate(connection);
    try {
        setCallTimeout(connection.server, std::min(m_options.callTimeout, goodbyeTimeout));
        connection.server->detach(connection.session);
    } catch (const CORBA::Exception&) { // nothing follows from it
    }
}

void LinkWorker::deactivate(const Connection& connection)
{
    connection.subscriber->end();
    try {
        m_orb.rootPoa()->deactivate_object(connection.subscriberId);
    } catch (const CORBA::Exception&) { // it never was active
    }
}

// What to send next: frames, or nothing but a sign of life. None when the connection is to end.
std::optional<std::string> LinkWorker::nextWrite()
{
    std::unique_lock lock(m_mutex);
    m_somethingToDo.wait_for(lock, m_options.heartbeat, [&] { return mustEnd() || hasOutgoing(); });
    const bool mayWrite = !m_stopping || (hasOutgoing() && std::chrono::steady_clock::now() < m_lastWrite);
    if (!m_dropReason.empty() || !mayWrite) {
        return std::nullopt;
    }
    if (!m_outgoing.isEmpty()) {
        return m_outgoing.takeBatch();
    }
    if (m_userChanges) {
        return std::nullopt;
    }
    std::string questions;
    for (const std::uint32_t handle : std::exchange(m_questions, {})) {
        link::appendFrame(questions, link::FrameType::Commands, handle);
    }
    return questions;
}

bool LinkWorker::waitToRepeat()
{
    std::unique_lock lock(m_mutex);
    return !m_somethingToDo.wait_for(lock, m_options.heartbeat, [this] { return mustEnd(); });
}

// With the mutex held.
bool LinkWorker::mustEnd() const
{
    return m_stopping || m_userChanges || !m_dropReason.empty();
}

// With the mutex held.
bool LinkWorker::hasOutgoing() const
{
    return !m_outgoing.isEmpty() || !m_questions.empty();
}

void LinkWorker::forgetOutgoing()
{
    m_outgoing.clear();
    m_questions.clear();
}

// True when somebody else is to be connected, which waits for nothing.
bool LinkWorker::waitForRetry(std::chrono::milliseconds time)
{
    std::unique_lock lock(m_mutex);
    m_somethingToDo.wait_for(lock, time, [this] { return m_stopping || m_userChanges; });
    return m_userChanges;
}

std::string LinkWorker::explain(const CORBA::Exception& exception) const
{
    if (const auto* const refused = ZelkoTreeLink::Refused::_downcast(&exception)) {
        return std::string("the recorder server refused: ") + static_cast<const char*>(refused->text);
    }
    const QString refusal = takeTlsRefusal();
    return (refusal.isEmpty() ? describe(exception) : refusal).toStdString();
}

} // namespace ZelkoCommon
