#pragma once

namespace ZelkoRecorder {

/// From here on every message of the log goes to the error output, a line each with its time in UTC, wherever the
/// surroundings would send it otherwise.
void logToStderr();

} // namespace ZelkoRecorder
