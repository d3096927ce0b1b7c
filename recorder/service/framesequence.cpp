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
        m_unproven.clear();
        return append(point);
    }
    if (isLate(m_last, point)) {
        return Place::Refused;
    }
    if (!m_unproven.empty() && !goesOn(m_unproven.back(), point)) {
        m_unproven.clear();
    }
    m_unproven.push_back(point);
    return unproven() < framesToBelieve ? Place::Unproven : Place::Proven;
}

std::vector<FrameSequence::Place> FrameSequence::believe()
{
    std::vector<Place> places;
    for (const Point& point : std::exchange(m_unproven, {})) {
        places.push_back(append(point));
    }
    return places;
}

// Only times are far off here. One wrong frame has a number that fits as seldom as it has the form of a frame.
std::vector<FrameSequence::Place> FrameSequence::believeAtEnd()
{
    if (!m_unproven.empty() && !goesOn(m_last, m_unproven.front())) {
        m_unproven.clear();
    }
    return believe();
}

// Where the numbers begin anew nobody knows how many there were between.
FrameSequence::Place FrameSequence::append(const Point& point)
{
    const qint64 missing = goesOn(m_last, point) ? distance(m_last.number, point.number) - 1 : 0;
    const bool isNext = missing == 0 && follows(m_last, point);
    m_lost += static_cast<quint64>(missing);
    m_last = point;
    return isNext ? Place::Next : Place::BehindGap;
}

bool FrameSequence::goesOn(const Point& before, const Point& point)
{
    const qint64 step = distance(before.number, point.number);
    return step > 0 && step <= longestGap && point.time >= before.time;
}

bool FrameSequence::follows(const Point& before, const Point& point)
{
    return goesOn(before, point) && point.time <= before.end + longestPause;
}

bool FrameSequence::isLate(const Point& before, const Point& point)
{
    return std::abs(distance(before.number, point.number)) <= longestGap && point.time <= before.time &&
           before.time - point.time <= longestPause;
}

} // namespace ZelkoRecorder
