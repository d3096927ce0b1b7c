#pragma once

#include <zelkobase/service/servicestatus.h>

namespace ZelkoRecorder::notOffered {

/// What the contract of the service has and this recorder does not do. Everything of that kind stands here, with the
/// way in which it is refused; nothing of it is taken and then left undone.
///
/// Two things a manager only tells of its channel, and nothing is asked of the recorder by them: whether it could
/// replay, and which receiver is behind it. They are heard and not kept.
/// @{
[[noreturn]] void replayToChannel();            ///< IF_ZLK_c_Chan::startReplaying: NO_IMPLEMENT
[[noreturn]] void additionalDataRate();         ///< IF_ZLK_c_Chan::setAdditionalDataRateClass: NO_IMPLEMENT
[[noreturn]] void loopRecording();              ///< IF_ZLK_c_Chan::startRecording with a loop: exChan, CHAN_FAILED
ZelkoCommon::ServiceStatus replayToReceivers(); ///< IF_ZELKO_Replay::StartReplayReceivers: NotOffered
ZelkoCommon::ServiceStatus otherSpeeds();       ///< IF_ZELKO_Replay::StartReplay but in real time: SpeedNotOffered
/// @}

} // namespace ZelkoRecorder::notOffered
