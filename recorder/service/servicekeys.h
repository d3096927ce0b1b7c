#pragma once

#include <string>

namespace ZelkoRecorder {

/// Under these object keys the recorder's service is reached, before and after a restart:
/// corbaloc::1.2@HOST:PORT/RecorderService is the entry point.
/// @{
inline constexpr char entryKey[] = "RecorderService";
inline constexpr char adminKey[] = "RecorderService/Admin";
inline constexpr char replayKey[] = "RecorderService/Replay";
inline std::string channelKey(const std::string& channelId)
{
    return "RecorderService/Channel/" + channelId;
}
/// @}

} // namespace ZelkoRecorder
