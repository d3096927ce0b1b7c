#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <mutex>

namespace ZelkoRecorder {

/// Tells in the log what was refused to clients, who may try as often as they like: a bounded number of lines in each
/// period, then how many more there were. Any thread.
class RefusalLog
{
public:
    using Clock = std::chrono::steady_clock;

    struct Options
    {
        int lines = 20;
        std::chrono::milliseconds period{10'000};
        std::function<Clock::time_point()> now = &Clock::now;
    };

    explicit RefusalLog(const Options& options);

    /// Tells what was counted until now.
    ~RefusalLog();

    RefusalLog(const RefusalLog&) = delete;
    RefusalLog& operator=(const RefusalLog&) = delete;

    /// Writes a line, or counts it. What was counted is told before the first line of a later period.
    void tell(const QString& line);

    /// Tells what was counted in a period that is over: to be called now and then, for nobody may be refused again.
    void tellRest();

private:
    void beginPeriod(Clock::time_point now);
    void tellCount();

    const Options m_options;
    std::mutex m_mutex;
    Clock::time_point m_end; // of the present period
    int m_told = 0;
    int m_untold = 0;
};

} // namespace ZelkoRecorder
