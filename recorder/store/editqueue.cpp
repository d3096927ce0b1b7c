#include <recorder/store/editqueue.h>

#include <utility>

namespace ZelkoRecorder {

EditQueue::EditQueue(std::function<void()> posted)
    : m_posted(std::move(posted))
{}

bool EditQueue::post(const Entry& entry)
{
    const std::lock_guard lock(m_mutex);
    const bool isTaken = m_stage == Stage::Open || (m_stage == Stage::Closed && entry.over);
    if (isTaken) {
        m_entries.push_back(entry);
        if (m_posted) {
            m_posted();
        }
    }
    return isTaken;
}

std::vector<EditQueue::Entry> EditQueue::take()
{
    const std::lock_guard lock(m_mutex);
    return m_stage == Stage::Open ? std::exchange(m_entries, {}) : std::vector<Entry>();
}

std::vector<EditQueue::Entry> EditQueue::close()
{
    const std::lock_guard lock(m_mutex);
    if (m_stage != Stage::Open) {
        return {};
    }
    m_stage = Stage::Closed;
    return std::exchange(m_entries, {});
}

void EditQueue::end()
{
    std::unique_lock lock(m_mutex);
    Q_ASSERT(m_stage != Stage::Open);
    m_stage = Stage::Ended;
    const std::vector<Entry> late = std::exchange(m_entries, {});
    lock.unlock();
    for (const Entry& entry : late) {
        entry.over();
    }
}

} // namespace ZelkoRecorder
