#pragma once

#include <zelkobase/data/zelkobasedata_export.h>

#include <reportcore/fielddeclaration.h>

#define ZELKO_HEALTH_STATES(ENUMERATOR)                                                                                \
    ENUMERATOR(OK, "OK")                                                                                               \
    ENUMERATOR(Warning, "Warning")                                                                                     \
    ENUMERATOR(Critical, "Critical")                                                                                   \
    ENUMERATOR(Offline, "Offline")

#define ZELKO_RECORD_REPLAY_MODES(ENUMERATOR)                                                                          \
    ENUMERATOR(Stopped, "stopped")                                                                                     \
    ENUMERATOR(Started, "replay started")                                                                              \
    ENUMERATOR(Paused, "paused")                                                                                       \
    ENUMERATOR(Pausing, "pausing")                                                                                     \
    ENUMERATOR(Running, "running")                                                                                     \
    ENUMERATOR(Stopping, "stopping")

#define ZELKO_RECORD_REPLAY_ALL_MODES(ENUMERATOR)                                                                      \
    ENUMERATOR(StartRequested, "start requested")                                                                      \
    ENUMERATOR(NormalRecording, "recording")                                                                           \
    ENUMERATOR(ContinuousRecording, "continuous recording")                                                            \
    ENUMERATOR(Stopping, "stopping")                                                                                   \
    ENUMERATOR(Stopped, "stopped")

namespace ZELKO_XML {

/// States of devices and channels. The numbers are the keys of the values that carry them.
class ZELKOBASEDATA_EXPORT Admin
{
public:
    Admin() = delete;

    /// Health of a device.
    RG_ENUM(HealthState, ZELKO_HEALTH_STATES)

    /// State of a channel's replay.
    RG_ENUM(RecordReplayMode, ZELKO_RECORD_REPLAY_MODES)

    /// State of a channel's recording.
    RG_ENUM(RecordReplayAllModes, ZELKO_RECORD_REPLAY_ALL_MODES)
};

} // namespace ZELKO_XML
