#include <recorder/store/recorduses.h>

namespace ZelkoRecorder {

RecordUses::RecordUses() = default;
RecordUses::~RecordUses() = default;

RecordUses::Use::Use(RecordUses& uses, const QString& recordID, Kind kind)
    : m_uses(uses)
    , m_recordID(recordID)
    , m_kind(kind)
{}

RecordUses::Use::~Use()
{
    const std::lock_guard lock(m_uses.m_mutex);
    m_uses.m_uses.erase(m_uses.m_uses.constFind(m_recordID, m_kind));
}

RecordUses::Handle RecordUses::begin(const QString& recordID, Kind kind)
{
    const std::lock_guard lock(m_mutex);
    if (kind == Kind::Deletion ? m_uses.contains(recordID) : m_uses.contains(recordID, Kind::Deletion)) {
        return nullptr;
    }
    m_uses.insert(recordID, kind);
    return Handle(new Use(*this, recordID, kind));
}

bool RecordUses::isUsed(const QString& recordID) const
{
    const std::lock_guard lock(m_mutex);
    return m_uses.contains(recordID);
}

bool RecordUses::isUsed(const QString& recordID, Kind kind) const
{
    const std::lock_guard lock(m_mutex);
    return m_uses.contains(recordID, kind);
}

} // namespace ZelkoRecorder
