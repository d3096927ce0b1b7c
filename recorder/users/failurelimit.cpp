#include <recorder/users/failurelimit.h>

#include <algorithm>

namespace ZelkoRecorder {

FailureLimit::FailureLimit(const Options& options)
    : m_options(options)
{}

bool FailureLimit::begin(const std::string& host)
{
    const std::lock_guard lock(m_mutex);
    const auto now = m_options.now();
    const auto found = m_debts.find(host);
    const Debt debt = (found == m_debts.end() ? now : std::max(found->second, now)) + m_options.pause;
    if (debt - now > m_options.pause * m_options.atOnce) {
        return false;
    }
    if (found == m_debts.end()) {
        makeRoom(now);
    }
    m_debts[host] = debt;
    return true;
}

void FailureLimit::takeBack(const std::string& host)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_debts.find(host);
    if (found == m_debts.end()) {
        return;
    }
    found->second -= m_options.pause;
    if (found->second <= m_options.now()) {
        m_debts.erase(found);
    }
}

std::size_t FailureLimit::hostCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_debts.size();
}

// With the mutex held.
void FailureLimit::makeRoom(Clock::time_point now)
{
    if (m_debts.size() < m_options.hosts) {
        return;
    }
    std::erase_if(m_debts, [&](const auto& entry) { return entry.second <= now; });
    if (m_debts.size() < m_options.hosts) {
        return;
    }
    m_debts.erase(std::min_element(m_debts.begin(), m_debts.end(),
                                   [](const auto& a, const auto& b) { return a.second < b.second; }));
}

} // namespace ZelkoRecorder
