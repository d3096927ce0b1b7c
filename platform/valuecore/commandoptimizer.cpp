#include <valuecore/commandoptimizer.h>

#include <utility>

namespace {

using OnValue = ValueBase::CommandOnValue;

const OnValue* onValue(const Command& command)
{
    return dynamic_cast<const OnValue*>(&command);
}

// Commands about the value as a whole stand under their id, those about an item under the hash of the item's key.
std::size_t placeOf(const OnValue& command)
{
    return command.TargetHash().value_or(static_cast<std::size_t>(command.GetCommandId()));
}

bool isBaseCommand(const Command& command)
{
    return command.GetCommandId() == ValueBase::CommandIdState ||
           command.GetCommandId() == ValueBase::CommandIdHasChanged;
}

} // namespace

ICommandListOptimizer::~ICommandListOptimizer() = default;

CommandListOptimizer::CommandListOptimizer() = default;

CommandListOptimizer::~CommandListOptimizer() = default;

void CommandListOptimizer::Add(std::unique_ptr<Command> command)
{
    if (const OnValue* const added = onValue(*command)) {
        if (added->SupersedesContent()) {
            dropContent();
        } else {
            dropSuperseded(*command);
        }
        remember(*added, m_commands.size());
    }
    m_commands.push_back(std::move(command));
}

CommandList CommandListOptimizer::Take()
{
    m_targets.clear();
    std::erase(m_commands, nullptr);
    return std::exchange(m_commands, {});
}

// State and repeated notifications are no content. Each command is dropped once at the most, so this is paid for.
void CommandListOptimizer::dropContent()
{
    CommandList kept;
    m_targets.clear();
    for (auto& command : m_commands) {
        if (command && isBaseCommand(*command)) {
            remember(*onValue(*command), kept.size());
            kept.push_back(std::move(command));
        }
    }
    m_commands = std::move(kept);
}

// Kept commands are not looked at again, so that a long row of them costs nothing.
void CommandListOptimizer::remember(const ValueBase::CommandOnValue& command, std::size_t position)
{
    if (!command.IsKept()) {
        m_targets.emplace(placeOf(command), position);
    }
}

void CommandListOptimizer::dropSuperseded(const Command& command)
{
    const OnValue& added = *onValue(command);
    auto [place, end] = m_targets.equal_range(placeOf(added));
    while (place != end) {
        auto& earlier = m_commands[place->second];
        if (added.Supersedes(*onValue(*earlier))) {
            earlier.reset();
            place = m_targets.erase(place);
        } else {
            ++place;
        }
    }
}
