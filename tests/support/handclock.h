#pragma once

#include <recorder/store/recordingclock.h>

#include <atomic>

namespace ZelkoTest {

/// A clock that goes on only when it is told to. Any thread.
class HandClock final : public ZelkoRecorder::RecordingClock
{
public:
    TimePoint now() override { return TimePoint(std::chrono::hours(1)) + std::chrono::milliseconds(m_passed); }
    void wait(const std::stop_token&, std::chrono::milliseconds time) override { advance(time); }
    void advance(std::chrono::milliseconds time) { m_passed += time.count(); }

private:
    std::atomic<std::chrono::milliseconds::rep> m_passed = 0;
};

} // namespace ZelkoTest
