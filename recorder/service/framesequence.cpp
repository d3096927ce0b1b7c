#include <recorder/service/framesequence.h>

#include <cstdlib>
#include <utility>

namespace ZelkoRecorder {

namespace {

// Numbers count on beyond their end; a distance of more than half of them is a step back.
qint64 distance(quint32 from, quint32 to)
{
    return static_cast<qint32>(to - from);
}

} // namespace

FrameSequence::Place FrameSequence::place(const ChannelFrame& frame, quint64 end)
{
    const Point point{frame.number, frame.time, end};
    if (!std::exchange(m_hasBegun, true)) {
        m_last = point;
        return Place::Next;
    }
    if (follows(m_last, point)) {
        const qint64 missing = distance(m_last.number, point.number) - 1;
        m_lost += static_cast<quint64>(missing);
        m_last = point;
        m_suspects = 0;
        return missing > 0 ? Place::BehindGap : Place::Next;
    }
    if (isLate(m_last, point) || !isBelieved(point)) {
        return Place::Refused;
    }
    m_last = point;
    return Place::BehindGap;
}

bool FrameSequence::follows(const Point& before, const Point& point)
{
    const qint64 step = distance(before.number, point.number);
    return step > 0 && step <= longestGap && point.time >= before.time && point.time <= before.end + longestPause;
}

bool FrameSequence::isLate(const Point& before, const Point& point)
{
    return std::abs(distance(before.number, point.number)) <= longestGap && point.time <= before.time &&
           before.time - point.time <= longestPause;
}

bool FrameSequence::isBelieved(const Point& point)
{
    m_suspects = m_suspects > 0 && follows(m_suspect, point) ? m_suspects + 1 : 1;
    m_suspect = point;
    if (m_suspects < framesToBelieve) {
        return false;
    }
    m_suspects = 0;
    return true;
}

} // namespace ZelkoRecorder
