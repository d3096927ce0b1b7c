#include <zelkobase/connection/linkqueue.h>

#include <utility>

namespace ZelkoCommon {

LinkQueue::LinkQueue(std::function<void()> wakeUp, std::size_t maxBytes)
    : m_wakeUp(std::move(wakeUp))
    , m_maxBytes(maxBytes)
{}

std::uint64_t LinkQueue::open()
{
    const std::lock_guard lock(m_mutex);
    m_open = true;
    return ++m_connection;
}

void LinkQueue::close(std::uint64_t connection, const std::string& reason)
{
    const std::lock_guard lock(m_mutex);
    if (!isOpen(connection)) {
        return;
    }
    m_open = false;
    m_roomOrEnd.notify_all();
    append(Disconnected{reason});
}

bool LinkQueue::put(std::uint64_t connection, std::string bytes, std::chrono::milliseconds patience)
{
    std::unique_lock lock(m_mutex);
    const auto isOver = [&] { return !isOpen(connection); };
    // An empty queue takes a batch of any size, so that a small bound never locks a large batch out.
    const auto hasRoom = [&] { return m_bytes == 0 || m_bytes + bytes.size() <= m_maxBytes; };
    if (!m_roomOrEnd.wait_for(lock, patience, [&] { return isOver() || hasRoom(); }) || isOver()) {
        return false;
    }
    m_bytes += bytes.size();
    append(Batch{std::move(bytes)});
    return true;
}

std::optional<LinkQueue::Entry> LinkQueue::take()
{
    const std::lock_guard lock(m_mutex);
    if (m_entries.empty()) {
        m_awake = false;
        return std::nullopt;
    }
    Entry entry = std::move(m_entries.front());
    m_entries.pop_front();
    if (const auto* const batch = std::get_if<Batch>(&entry)) {
        m_bytes -= batch->bytes.size();
        m_roomOrEnd.notify_all();
    }
    return entry;
}

void LinkQueue::reportFailure(const std::string& reason, bool isDenied)
{
    const std::lock_guard lock(m_mutex);
    append(ConnectFailed{reason, isDenied});
}

void LinkQueue::reportRefusal(std::uint64_t connection, const std::string& reason)
{
    const std::lock_guard lock(m_mutex);
    if (isOpen(connection)) {
        append(WriteRefused{reason});
    }
}

void LinkQueue::shutDown()
{
    const std::lock_guard lock(m_mutex);
    m_open = false;
    m_wakeUp = nullptr;
    m_roomOrEnd.notify_all();
}

bool LinkQueue::isOpen(std::uint64_t connection) const
{
    return m_open && connection == m_connection;
}

// The wake-up happens with the mutex held, so that nobody is woken after `shutDown`.
void LinkQueue::append(Entry entry)
{
    m_entries.push_back(std::move(entry));
    if (!std::exchange(m_awake, true) && m_wakeUp) {
        m_wakeUp();
    }
}

} // namespace ZelkoCommon
