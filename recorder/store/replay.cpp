#include <recorder/store/replay.h>

#include <algorithm>

namespace ZelkoRecorder {

using std::chrono::duration_cast;
using std::chrono::microseconds;

namespace {

// A file may claim any times: this keeps the sums below what microseconds can count.
constexpr quint64 longest = 1'000'000'000'000'000; // some thirty years

} // namespace

Replay::Replay(const RecordTimeline& timeline, quint64 start, quint64 stop, TimePoint now)
    : m_timeline(timeline)
    , m_start(std::max(start, timeline.startTime()))
    , m_stop(stop == 0 ? timeline.stopTime() : std::min(stop, timeline.stopTime()))
    , m_begin(now)
{
    m_stop = std::clamp(m_stop, m_start, m_start + std::min(longest, ~m_start));
}

void Replay::pause(TimePoint now)
{
    m_playedBefore = played(now);
    m_pauses += m_paused ? 0 : 1;
    m_paused = true;
}

void Replay::continueAt(TimePoint now)
{
    if (m_paused) {
        m_paused = false;
        m_begin = now;
    }
}

bool Replay::hasEnded(TimePoint now) const
{
    return left(now).count() == 0;
}

quint64 Replay::timeAt(TimePoint now) const
{
    return m_stop - static_cast<quint64>(left(now).count());
}

quint64 Replay::offsetAt(TimePoint now) const
{
    return m_timeline.offsetAt(timeAt(now));
}

microseconds Replay::left(TimePoint now) const
{
    const microseconds whole(static_cast<qint64>(m_stop - m_start));
    return std::max(microseconds(0), whole - played(now));
}

microseconds Replay::played(TimePoint now) const
{
    return m_paused ? m_playedBefore : m_playedBefore + duration_cast<microseconds>(now - m_begin);
}

} // namespace ZelkoRecorder
