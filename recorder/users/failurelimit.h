#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <unordered_map>

namespace ZelkoRecorder {

/// How many wrong passwords one host may try: some at once, then one after each pause. A host that was refused may try
/// again when the pause is over; other hosts do not notice. Any thread.
class FailureLimit
{
public:
    using Clock = std::chrono::steady_clock;

    struct Options
    {
        int atOnce = 10;
        std::chrono::milliseconds pause{3000};

        /// Hosts that are remembered. Where there are more, the one that failed least is forgotten first.
        std::size_t hosts = 4096;

        std::function<Clock::time_point()> now = &Clock::now;
    };

    explicit FailureLimit(const Options& options);

    /// Counts a try as failed before it is made, so that many at the same time are counted too; false, and no count,
    /// when the host has no try left.
    bool begin(const std::string& host);

    /// Takes back what `begin` counted: the password was right, or was not looked at.
    void takeBack(const std::string& host);

    /// How many hosts are remembered.
    std::size_t hostCount() const;

private:
    // The moment up to which pauses reach: each failure moves it on by one.
    using Debt = Clock::time_point;

    void makeRoom(Clock::time_point now);

    const Options m_options;
    mutable std::mutex m_mutex;
    std::unordered_map<std::string, Debt> m_debts;
};

} // namespace ZelkoRecorder
