#pragma once

#include <QTimer>

#include <chrono>
#include <functional>

namespace ZelkoRecorder {

/// A timer for times of any length: a plain one ends at 24 days, which is where its number of milliseconds does. Lives
/// on the thread of its event loop.
class LongTimer
{
public:
    using Milliseconds = std::chrono::milliseconds;

    /// `over` is called once when the time is over. The time is counted in steps of `longestStep` at most.
    explicit LongTimer(std::function<void()> over, Milliseconds longestStep = std::chrono::hours(24));

    /// Counts `time` from now on; a count that is under way ends.
    void start(Milliseconds time);

    void stop();

private:
    void startStep();
    void endStep();

    const std::function<void()> m_over;
    const Milliseconds m_longestStep;
    QTimer m_step;
    Milliseconds m_behindStep{0};
};

} // namespace ZelkoRecorder
