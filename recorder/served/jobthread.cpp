#include <recorder/served/jobthread.h>

#include <utility>

namespace ZelkoRecorder {

JobThread::JobThread()
    : m_thread([this] { work(); })
{}

JobThread::~JobThread()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void JobThread::enqueue(std::function<void()> job)
{
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_changed.notify_one();
}

void JobThread::work()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_ending || !m_jobs.empty(); });
        if (m_ending) {
            return;
        }
        const std::function<void()> job = std::exchange(m_jobs.front(), {});
        m_jobs.pop_front();
        lock.unlock();
        job();
        lock.lock();
    }
}

} // namespace ZelkoRecorder
