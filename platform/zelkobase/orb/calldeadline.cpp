#include <zelkobase/orb/calldeadline.h>

#include <omniORB4/omniORB.h>

namespace ZelkoCommon {
namespace {

thread_local CallDeadline* innermost = nullptr;

omni_time_t timeAfter(std::chrono::milliseconds limit)
{
    using namespace std::chrono;
    const auto whole = duration_cast<seconds>(limit);
    unsigned long second = 0;
    unsigned long nanosecond = 0;
    omni_thread::get_time(&second, &nanosecond, static_cast<unsigned long>(whole.count()),
                          static_cast<unsigned long>(nanoseconds(limit - whole).count()));
    return {static_cast<_CORBA_ULong>(second), static_cast<_CORBA_ULong>(nanosecond)};
}

} // namespace

CallDeadline::CallDeadline(std::chrono::milliseconds limit)
    : m_outer(innermost)
    , m_end(timeAfter(limit))
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
