#pragma once

#include <recorder/store/recordingclock.h>

#include <QtGlobal>

namespace ZelkoRecorder {

/// How far a signal has come that began when this object was made.
class SignalPace
{
public:
    /// `speed` is how many seconds of the signal go by in a second; with 0 all of it is there at once. `sampleRate` in
    /// Hz. `clock` outlives the pace.
    SignalPace(double speed, quint64 sampleRate, RecordingClock& clock);

    /// Frames that the signal has had time for.
    qint64 framesDue() const;

private:
    RecordingClock& m_clock;
    const RecordingClock::TimePoint m_begin;
    const double m_speed;
    const double m_sampleRate;
};

} // namespace ZelkoRecorder
