#pragma once

#include <chrono>

namespace ZelkoRecorder {

/// From one position of a replay on the tree to the next: often enough for a marker that moves, seldom enough for many
/// clients.
inline constexpr std::chrono::milliseconds replayStep{100};

} // namespace ZelkoRecorder
