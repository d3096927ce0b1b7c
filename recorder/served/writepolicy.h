#pragma once

#include <recorder/link/treelinkserver.h>
#include <recorder/users/rights.h>

#include <optional>

namespace ZelkoRecorder {

/// What writing a value of the tree does; nothing for values that are no commands, which nobody writes.
std::optional<Action> actionOfWrite(const ValueBase& value);

/// Who may write which value: the command values, by a user whose role has the right to what they do.
TreeLinkServer::MayWrite writePolicy();

} // namespace ZelkoRecorder
