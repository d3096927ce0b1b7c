#include <recorder/store/signalpace.h>

#include <limits>

namespace ZelkoRecorder {

SignalPace::SignalPace(double speed, quint64 sampleRate, RecordingClock& clock)
    : m_clock(clock)
    , m_begin(clock.now())
    , m_speed(speed)
    , m_sampleRate(static_cast<double>(sampleRate))
{}

qint64 SignalPace::framesDue() const
{
    if (m_speed <= 0) {
        return std::numeric_limits<qint64>::max();
    }
    const double seconds = std::chrono::duration<double>(m_clock.now() - m_begin).count();
    return static_cast<qint64>(seconds * m_speed * m_sampleRate);
}

} // namespace ZelkoRecorder
