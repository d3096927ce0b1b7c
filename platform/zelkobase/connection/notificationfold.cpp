#include <zelkobase/connection/notificationfold.h>

#include <valuecore/valuebase.h>
#include <zelkoguibase/valueitemmap/itemmapcommands.h>

#include <algorithm>
#include <utility>

namespace ZelkoCommon {
namespace {

bool isSet(const Command& command)
{
    return command.GetCommandId() == CommandIdMapSetAt;
}

bool isItemCommand(const Command& command)
{
    return isSet(command) || command.GetCommandId() == CommandIdMapEraseAt;
}

std::size_t keyOf(const Command& command)
{
    return command.TargetHash().value_or(0);
}

} // namespace

NotificationFold::NotificationFold() = default;

NotificationFold::~NotificationFold()
{
    end();
}

void NotificationFold::prepare(ValueBase& value, const Command& command)
{
    while (m_value && (m_value != &value || mustEndBefore(command))) {
        if (!endsBeside(value)) {
            return;
        }
    }
    if (!isItemCommand(command) || value.ChangeLogCapacity() == 0) {
        return;
    }
    if (!m_value) {
        m_value = &value;
        m_alive = value.lifeline();
        value.StartTransaction(nullptr);
    }
    remember(command);
}

void NotificationFold::end()
{
    if (!m_value) {
        return;
    }
    m_changes = 0;
    m_keepsSetKeys = !m_erasedKeys.isEmpty();
    m_setKeys.clear();
    m_erasedKeys.clear();
    // Observers run now, and may come back here.
    ValueBase* const value = std::exchange(m_value, nullptr);
    if (!m_alive.expired()) {
        value->EndTransaction(TChangeCode::ValueChanged, nullptr);
    }
}

// Ends the fold, and tells whether the observers have left `value` where it is.
bool NotificationFold::endsBeside(const ValueBase& value)
{
    const auto alive = value.lifeline();
    end();
    return !alive.expired();
}

// Whatever a fold has whose set keys are not kept is sets, and it has at least one.
bool NotificationFold::mustEndBefore(const Command& command) const
{
    if (!isItemCommand(command) || m_changes >= std::min(m_value->ChangeLogCapacity(), maxChanges)) {
        return true;
    }
    return isSet(command) ? m_erasedKeys.containsThatOf(command) : !m_keepsSetKeys || m_setKeys.containsThatOf(command);
}

void NotificationFold::remember(const Command& command)
{
    ++m_changes;
    if (!isSet(command)) {
        m_erasedKeys.insertThatOf(command);
        m_keepsSetKeys = true;
    } else if (m_keepsSetKeys) {
        m_setKeys.insertThatOf(command);
    }
}

bool NotificationFold::Keys::containsThatOf(const Command& command) const
{
    return m_used && m_slots[slotOf(keyOf(command))] != 0;
}

void NotificationFold::Keys::insertThatOf(const Command& command)
{
    const std::size_t key = keyOf(command);
    m_slots[slotOf(key)] = key | 1;
    m_used = true;
}

void NotificationFold::Keys::clear()
{
    if (m_used) {
        m_slots.fill(0);
        m_used = false;
    }
}

// Where the hash stands or would stand; there is always a free slot.
std::size_t NotificationFold::Keys::slotOf(std::size_t hash) const
{
    std::size_t slot = (hash >> 1) % slotCount;
    while (m_slots[slot] != 0 && m_slots[slot] != (hash | 1)) {
        slot = (slot + 1) % slotCount;
    }
    return slot;
}

} // namespace ZelkoCommon
