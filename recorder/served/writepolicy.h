#pragma once

#include <recorder/link/treelinkserver.h>
#include <recorder/users/rights.h>

#include <optional>

namespace ZelkoRecorder {

/// What writing a value of the tree does; nothing for values that are neither commands nor wishes to a channel, which
/// nobody writes.
std::optional<Action> actionOfWrite(const ValueBase& value);

/// Who may write which value: the commands and the wishes, by a user whose role has the right to what they do.
TreeLinkServer::MayWrite writePolicy();

} // namespace ZelkoRecorder
