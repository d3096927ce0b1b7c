#include <recorder/store/replay.h>

#include <algorithm>

namespace ZelkoRecorder {

using std::chrono::duration_cast;
using std::chrono::microseconds;

namespace {

// A file may claim any times: these bounds keep the sums below what microseconds can count.
constexpr quint64 longestRound = 1'000'000'000'000'000; // some thirty years
constexpr int mostRounds = 1000;

} // namespace

Replay::Replay(const RecordTimeline& timeline, quint64 start, quint64 stop, int rounds, TimePoint now)
    : m_timeline(timeline)
    , m_start(std::max(start, timeline.startTime()))
    , m_stop(stop == 0 ? timeline.stopTime() : std::min(stop, timeline.stopTime()))
    , m_rounds(std::clamp(rounds, 1, mostRounds))
    , m_begin(now)
{
    m_stop = std::clamp(m_stop, m_start, m_start + std::min(longestRound, ~m_start));
}

void Replay::pause(TimePoint now)
{
    m_playedBefore = played(now);
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

// At the end it stands at its stop, not at the begin of a round that does not come.
quint64 Replay::timeAt(TimePoint now) const
{
    if (!isValid() || hasEnded(now)) {
        return m_stop;
    }
    return m_start + static_cast<quint64>(played(now).count()) % (m_stop - m_start);
}

quint64 Replay::offsetAt(TimePoint now) const
{
    return m_timeline.offsetAt(timeAt(now));
}

microseconds Replay::left(TimePoint now) const
{
    return std::max(microseconds(0), whole() - played(now));
}

microseconds Replay::played(TimePoint now) const
{
    return m_paused ? m_playedBefore : m_playedBefore + duration_cast<microseconds>(now - m_begin);
}

microseconds Replay::whole() const
{
    return microseconds(static_cast<qint64>(m_stop - m_start)) * m_rounds;
}

} // namespace ZelkoRecorder
