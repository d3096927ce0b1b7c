#include <recorder/link/linksender.h>

#include <zelkobase/connection/linkframe.h>
#include <zelkobase/orb/corbacall.h>

#include <utility>

namespace ZelkoRecorder {

namespace {

constexpr std::size_t maxWaiting = 2;

// The bytes are lent to the call, not copied.
ZelkoTreeLink::Batch lend(const std::string& bytes)
{
    const auto size = static_cast<CORBA::ULong>(bytes.size());
    return {size, size, reinterpret_cast<CORBA::Octet*>(const_cast<char*>(bytes.data())), false};
}

std::string explain(const CORBA::Exception& exception)
{
    if (const auto* const refused = ZelkoTreeLink::Refused::_downcast(&exception)) {
        return static_cast<const char*>(refused->text);
    }
    return ZelkoCommon::describe(exception).toStdString();
}

} // namespace

LinkSender::LinkSender(ZelkoTreeLink::Subscriber_ptr client, ZelkoTreeLink::SessionId session, Callbacks callbacks)
    : m_client(ZelkoTreeLink::Subscriber::_duplicate(client))
    , m_session(session)
    , m_callbacks(std::move(callbacks))
    , m_thread([this] { run(); })
{}

LinkSender::~LinkSender()
{
    stop();
    m_breaker.breakCalls();
    m_thread.join();
}

bool LinkSender::hasRoom() const
{
    const std::lock_guard lock(m_mutex);
    return !m_stopped && m_waiting.size() < maxWaiting;
}

void LinkSender::send(std::string batch)
{
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back(std::move(batch));
    m_somethingToDo.notify_all();
}

void LinkSender::stop()
{
    const std::lock_guard lock(m_mutex);
    m_stopped = true;
    m_somethingToDo.notify_all();
}

bool LinkSender::hasEnded() const
{
    const std::lock_guard lock(m_mutex);
    return m_ended;
}

void LinkSender::run()
{
    std::string batch;
    while (waitForBatch(batch) && deliver(batch)) {
        report(m_callbacks.sent);
    }
    const std::lock_guard lock(m_mutex);
    m_ended = true;
}

bool LinkSender::waitForBatch(std::string& batch)
{
    std::unique_lock lock(m_mutex);
    m_somethingToDo.wait(lock, [this] { return m_stopped || !m_waiting.empty(); });
    if (m_stopped) {
        return false;
    }
    batch = std::move(m_waiting.front());
    m_waiting.pop_front();
    return true;
}

bool LinkSender::deliver(const std::string& batch)
{
    const ZelkoCommon::CallBreaker::Scope scope(m_breaker);
    try {
        m_client->deliver(m_session, m_number++, lend(batch), ZelkoCommon::link::checksum(batch));
        return true;
    } catch (const CORBA::Exception& exception) {
        report(m_callbacks.failed, explain(exception));
        return false;
    }
}

template <typename Callback, typename... Arguments>
void LinkSender::report(const Callback& callback, const Arguments&... arguments)
{
    const std::lock_guard lock(m_mutex); // so that `stop` waits for a callback that has begun
    if (!m_stopped) {
        callback(arguments...);
    }
}

} // namespace ZelkoRecorder
