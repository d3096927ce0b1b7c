#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace ZelkoRecorder {

/// Runs jobs one after the other, in their order, on a thread of its own.
class JobThread
{
public:
    JobThread();

    /// Waits for the job under way and forgets the others.
    ~JobThread();
    JobThread(const JobThread&) = delete;
    JobThread& operator=(const JobThread&) = delete;

    /// Any thread, a job included.
    void enqueue(std::function<void()> job);

private:
    void work();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_jobs;
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace ZelkoRecorder
