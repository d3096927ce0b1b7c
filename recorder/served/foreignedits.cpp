#include <recorder/served/foreignedits.h>

namespace ZelkoRecorder {

void ForeignEdits::begin(const QString& recordID, const std::shared_ptr<EditQueue>& edits)
{
    const std::lock_guard lock(m_mutex);
    m_edits[recordID] = edits;
}

void ForeignEdits::end(const QString& recordID)
{
    const std::lock_guard lock(m_mutex);
    m_edits.erase(recordID);
}

bool ForeignEdits::post(const QString& recordID, const EditQueue::Entry& entry)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_edits.find(recordID);
    return found != m_edits.end() && found->second->post(entry);
}

} // namespace ZelkoRecorder
