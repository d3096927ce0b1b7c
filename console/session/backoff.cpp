#include <console/session/backoff.h>

#include <algorithm>
#include <utility>

namespace ZelkoConsole {

BackOff::BackOff(Milliseconds first, Milliseconds last)
    : m_first(first)
    , m_last(last)
    , m_next(first)
{}

BackOff::Milliseconds BackOff::next()
{
    return std::exchange(m_next, std::min(m_next * 2, m_last));
}

void BackOff::reset()
{
    m_next = m_first;
}

} // namespace ZelkoConsole
