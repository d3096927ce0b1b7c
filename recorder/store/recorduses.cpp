#include <recorder/store/recorduses.h>

#include <QHash>

#include <mutex>
#include <utility>

namespace ZelkoRecorder {

struct RecordUses::State
{
    std::mutex mutex;
    QMultiHash<QString, Kind> uses;
};

RecordUses::RecordUses()
    : m_state(std::make_shared<State>())
{}

RecordUses::~RecordUses() = default;

RecordUses::Use::Use(const std::shared_ptr<State>& state, const QString& recordID, Kind kind)
    : m_state(state)
    , m_recordID(recordID)
    , m_kind(kind)
{}

RecordUses::Use::~Use()
{
    const std::lock_guard lock(m_state->mutex);
    m_state->uses.erase(std::as_const(m_state->uses).constFind(m_recordID, m_kind));
}

RecordUses::Handle RecordUses::begin(const QString& recordID, Kind kind)
{
    const std::lock_guard lock(m_state->mutex);
    if (kind == Kind::Deletion ? m_state->uses.contains(recordID) : m_state->uses.contains(recordID, Kind::Deletion)) {
        return nullptr;
    }
    m_state->uses.insert(recordID, kind);
    return Handle(new Use(m_state, recordID, kind));
}

} // namespace ZelkoRecorder
