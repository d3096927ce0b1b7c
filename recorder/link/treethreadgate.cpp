#include <recorder/link/treethreadgate.h>

#include <utility>

namespace ZelkoRecorder {

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

} // namespace ZelkoRecorder
