#pragma once

#include <zelkobase/service/servicestatus.h>

namespace ZelkoRecorder::notOffered {

/// What the contract of the service has and this recorder does not do. Everything of that kind stands here, with the
/// way in which it is refused; nothing of it is taken and then left undone.
///
/// One thing a manager only tells of its channel, and nothing is asked of the recorder by it: which receiver is behind
/// it. That is heard and not kept.
/// @{
[[noreturn]] void replayToChannel();            ///< IF_ZLK_c_Chan::startReplaying but in real time, or where the
                                                ///< channel does not replay: NO_IMPLEMENT
[[noreturn]] void additionalDataRate();         ///< IF_ZLK_c_Chan::setAdditionalDataRateClass: NO_IMPLEMENT
[[noreturn]] void loopRecording();              ///< IF_ZLK_c_Chan::startRecording with a loop: exChan, CHAN_FAILED
ZelkoCommon::ServiceStatus replayToReceivers(); ///< IF_ZELKO_Replay::StartReplayReceivers: NotOffered
ZelkoCommon::ServiceStatus otherSpeeds();       ///< IF_ZELKO_Replay::StartReplay but in real time: SpeedNotOffered
/// @}

/// The speed of a replay that is offered, in per cent; 0 stands for it, too.
inline constexpr int realTimeReplay = 100;

} // namespace ZelkoRecorder::notOffered
