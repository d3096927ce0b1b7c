#pragma once

#include <chrono>
#include <stop_token>

namespace ZelkoRecorder {

/// What a recording keeps time with.
class RecordingClock
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    virtual ~RecordingClock();

    virtual TimePoint now() = 0;

    /// Returns after this time, or when `stop` is requested.
    virtual void wait(const std::stop_token& stop, std::chrono::milliseconds time) = 0;

    /// The clock of the machine. Any thread.
    static RecordingClock& steady();
};

} // namespace ZelkoRecorder
