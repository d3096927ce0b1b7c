#include <recorder/service/longtimer.h>

#include <algorithm>
#include <utility>

namespace ZelkoRecorder {

LongTimer::LongTimer(std::function<void()> over, Milliseconds longestStep)
    : m_over(std::move(over))
    , m_longestStep(longestStep)
{
    m_step.setSingleShot(true);
    m_step.setTimerType(Qt::PreciseTimer); // the others are off by a twentieth, which adds up
    m_step.callOnTimeout([this] { endStep(); });
}

void LongTimer::start(Milliseconds time)
{
    m_behindStep = time;
    startStep();
}

void LongTimer::stop()
{
    m_step.stop();
}

void LongTimer::startStep()
{
    const Milliseconds step = std::min(m_behindStep, m_longestStep);
    m_behindStep -= step;
    m_step.start(step);
}

void LongTimer::endStep()
{
    if (m_behindStep.count() > 0) {
        startStep();
    } else {
        m_over();
    }
}

} // namespace ZelkoRecorder
