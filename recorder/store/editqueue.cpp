#include <recorder/store/editqueue.h>

#include <utility>

namespace ZelkoRecorder {

EditQueue::EditQueue(std::function<void()> posted)
    : m_posted(std::move(posted))
{}

bool EditQueue::post(const RecordEdit& edit, const Answer& answer)
{
    const std::lock_guard lock(m_mutex);
    if (!m_closed) {
        m_entries.push_back({edit, answer});
        if (m_posted) {
            m_posted();
        }
    }
    return !m_closed;
}

std::vector<EditQueue::Entry> EditQueue::take()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_entries, {});
}

std::vector<EditQueue::Entry> EditQueue::close()
{
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    return std::exchange(m_entries, {});
}

} // namespace ZelkoRecorder
