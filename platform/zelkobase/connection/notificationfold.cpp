#include <zelkobase/connection/notificationfold.h>

#include <valuecore/valuebase.h>
#include <zelkoguibase/valueitemmap/itemmapcommands.h>

#include <utility>

namespace ZelkoCommon {
namespace {

std::size_t targetOf(const Command& command)
{
    const auto* const onValue = dynamic_cast<const ValueBase::CommandOnValue*>(&command);
    return onValue ? onValue->TargetHash().value_or(0) : 0;
}

bool isItemCommand(const Command& command)
{
    return command.GetCommandId() == CommandIdMapSetAt || command.GetCommandId() == CommandIdMapEraseAt;
}

} // namespace

NotificationFold::NotificationFold() = default;

NotificationFold::~NotificationFold()
{
    end();
}

void NotificationFold::prepare(ValueBase& value, const Command& command)
{
    const auto alive = value.lifeline();
    if (m_value && (m_value != &value || mustEndBefore(command))) {
        end();
    }
    if (alive.expired()) {
        return;
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
    m_changes = 0;
    m_setKeys.clear();
    m_erasedKeys.clear();
    // Observers run now, and may come back here.
    ValueBase* const value = std::exchange(m_value, nullptr);
    if (value && !m_alive.expired()) {
        value->EndTransaction(TChangeCode::ValueChanged, nullptr);
    }
}

bool NotificationFold::mustEndBefore(const Command& command) const
{
    if (!isItemCommand(command) || m_changes >= m_value->ChangeLogCapacity()) {
        return true;
    }
    const auto& opposite = command.GetCommandId() == CommandIdMapSetAt ? m_erasedKeys : m_setKeys;
    return opposite.count(targetOf(command)) > 0;
}

void NotificationFold::remember(const Command& command)
{
    ++m_changes;
    auto& keys = command.GetCommandId() == CommandIdMapSetAt ? m_setKeys : m_erasedKeys;
    keys.insert(targetOf(command));
}

} // namespace ZelkoCommon
