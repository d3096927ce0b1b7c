#include <zelkobase/orb/calldeadline.h>

#include <zelkobase/orb/orbtime_p.h>

#include <omniORB4/omniORB.h>

namespace ZelkoCommon {
namespace {

thread_local CallDeadline* innermost = nullptr;

} // namespace

CallDeadline::CallDeadline(std::chrono::milliseconds limit)
    : m_outer(innermost)
    , m_end(orbTimeAfter(limit))
{
    if (m_outer && m_outer->m_end < m_end) {
        m_end = m_outer->m_end;
    }
    omniORB::setClientThreadCallDeadline(m_end);
    innermost = this;
}

CallDeadline::~CallDeadline()
{
    omniORB::setClientThreadCallDeadline(m_outer ? m_outer->m_end : omni_time_t(0, 0)); // 0: none
    innermost = m_outer;
}

} // namespace ZelkoCommon
