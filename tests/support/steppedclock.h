#pragma once

#include <recorder/store/recordingclock.h>

#include <condition_variable>
#include <mutex>

namespace ZelkoTest {

/// A clock that goes on only when it is told to, and lets those who wait for a time wait until then. Any thread.
class SteppedClock final : public ZelkoRecorder::RecordingClock
{
public:
    TimePoint now() override
    {
        const std::lock_guard lock(m_mutex);
        return m_now;
    }
    void wait(const std::stop_token& stop, std::chrono::milliseconds time) override
    {
        std::unique_lock lock(m_mutex);
        m_moved.wait(lock, stop, [this, until = m_now + time] { return m_now >= until; });
    }
    void advance(std::chrono::milliseconds time)
    {
        const std::lock_guard lock(m_mutex);
        m_now += time;
        m_moved.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable_any m_moved;
    TimePoint m_now = TimePoint(std::chrono::hours(1));
};

} // namespace ZelkoTest
