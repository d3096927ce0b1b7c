#pragma once

#include <deque>
#include <functional>
#include <mutex>

namespace ZelkoRecorder {

/// Runs functions on the thread of the tree for as long as the server there exists.
class TreeThreadGate
{
public:
    /// `wakeUp` makes the thread of the tree call `run`; it is called once until that was done.
    explicit TreeThreadGate(std::function<void()> wakeUp);

    /// Queues `work`; false when the server is gone. Work that is queued but not begun when it goes is destroyed.
    bool post(std::function<void()> work);

    /// Does what is queued. Thread of the tree.
    void run();

    /// From the return on nothing is queued any more, and nobody is woken.
    void close();

private:
    std::function<void()> next();

    std::mutex m_mutex;
    std::function<void()> m_wakeUp;
    std::deque<std::function<void()>> m_work;
};

} // namespace ZelkoRecorder
