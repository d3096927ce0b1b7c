#include <recorder/store/recordingclock.h>

#include <condition_variable>
#include <mutex>

namespace ZelkoRecorder {

namespace {

class SteadyClock final : public RecordingClock
{
public:
    TimePoint now() override { return std::chrono::steady_clock::now(); }
    void wait(const std::stop_token& stop, std::chrono::milliseconds time) override
    {
        std::mutex mutex;
        std::condition_variable_any nobodyWakes;
        std::unique_lock lock(mutex);
        nobodyWakes.wait_for(lock, stop, time, [] { return false; });
    }
};

} // namespace

RecordingClock::~RecordingClock() = default;

RecordingClock& RecordingClock::steady()
{
    static SteadyClock clock;
    return clock;
}

} // namespace ZelkoRecorder
