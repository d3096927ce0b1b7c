#include <recorder/service/callgate.h>

#include <recorder/service/questions.h>

namespace ZelkoRecorder {

namespace {

constexpr std::chrono::milliseconds pauseOfWaiting{10};

} // namespace

CallGate::Pass::Pass(CallGate& gate)
    : m_gate(gate)
{
    if (!m_gate.enter()) {
        throwUnanswered(Errands::Failure::GoingDown);
    }
}

CallGate::Pass::~Pass()
{
    m_gate.leave();
}

// Whoever is inside works on what goes when this has returned, so there is no end to this patience.
void CallGate::close(const std::function<void()>& meanwhile, const std::function<void()>& giveUp,
                     std::chrono::milliseconds patience)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    bool hasGivenUp = false;
    std::unique_lock lock(m_mutex);
    m_closed = true;
    while (!m_left.wait_for(lock, pauseOfWaiting, [this] { return m_inside == 0; })) {
        lock.unlock();
        if (!hasGivenUp && std::chrono::steady_clock::now() >= end) {
            hasGivenUp = true;
            giveUp();
        }
        meanwhile();
        lock.lock();
    }
}

bool CallGate::enter()
{
    const std::lock_guard lock(m_mutex);
    m_inside += m_closed ? 0 : 1;
    return !m_closed;
}

void CallGate::leave()
{
    const std::lock_guard lock(m_mutex);
    --m_inside;
    m_left.notify_all();
}

} // namespace ZelkoRecorder
