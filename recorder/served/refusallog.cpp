#include <recorder/served/refusallog.h>

#include <recorder/store/recorderlog.h>

#include <utility>

namespace ZelkoRecorder {

RefusalLog::RefusalLog(const Options& options)
    : m_options(options)
{}

RefusalLog::~RefusalLog()
{
    tellCount();
}

void RefusalLog::tell(const QString& line)
{
    const std::lock_guard lock(m_mutex);
    if (const auto now = m_options.now(); now >= m_end) {
        beginPeriod(now);
    }
    if (m_told == m_options.lines) {
        ++m_untold;
        return;
    }
    ++m_told;
    qCWarning(recorderLog).noquote() << "refused:" << line;
}

void RefusalLog::tellRest()
{
    const std::lock_guard lock(m_mutex);
    if (m_options.now() >= m_end) {
        tellCount();
    }
}

// With the mutex held.
void RefusalLog::beginPeriod(Clock::time_point now)
{
    m_end = now + m_options.period;
    m_told = 0;
    tellCount();
}

// With the mutex held, or alone.
void RefusalLog::tellCount()
{
    if (const int count = std::exchange(m_untold, 0); count > 0) {
        qCWarning(recorderLog) << "refused:" << count << "times more";
    }
}

} // namespace ZelkoRecorder
