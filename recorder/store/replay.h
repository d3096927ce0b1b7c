#pragma once

#include <recorder/store/recordingclock.h>
#include <recorder/store/recordtimeline.h>

#include <chrono>

namespace ZelkoRecorder {

/// Where the replay of a stored record stands: its position runs with the clock on the wall while it is not paused.
/// Keeps no thread and no timer of its own: it is where the clock says. For one thread.
class Replay
{
public:
    using TimePoint = RecordingClock::TimePoint;

    /// Begins at `now`, at the time `start` of the record, and goes on to `stop`, both in microseconds since the epoch;
    /// 0 as `stop` is the record's end. What lies outside of the record is left out, and so is what is
    /// more than some thirty years after `start`.
    Replay(const RecordTimeline& timeline, quint64 start, quint64 stop, TimePoint now);

    /// Whether there is anything between start and stop.
    bool isValid() const { return m_start < m_stop; }

    /// Neither has an effect a second time, or behind the end.
    void pause(TimePoint now);
    void continueAt(TimePoint now);

    bool isPaused() const { return m_paused; }

    /// How often it was paused so far: who looks now and then knows a pause by that from the one before.
    quint32 pauses() const { return m_pauses; }

    /// Whether it has come to its stop.
    bool hasEnded(TimePoint now) const;

    /// The time of the record that is being replayed, in microseconds since the epoch.
    quint64 timeAt(TimePoint now) const;

    /// The same as a position of the record, in bytes.
    quint64 offsetAt(TimePoint now) const;

    /// How long until the end if nothing pauses it; 0 if it has ended.
    std::chrono::microseconds left(TimePoint now) const;

private:
    std::chrono::microseconds played(TimePoint now) const;

    const RecordTimeline m_timeline;
    quint64 m_start;
    quint64 m_stop;
    bool m_paused = false;
    quint32 m_pauses = 0;
    TimePoint m_begin;                           // of the part since the last pause
    std::chrono::microseconds m_playedBefore{0}; // in the parts before
};

} // namespace ZelkoRecorder
