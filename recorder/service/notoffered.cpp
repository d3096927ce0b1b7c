#include <recorder/service/notoffered.h>

#include <zelkoidl/recorderservice.hh>

namespace ZelkoRecorder::notOffered {

// A channel gets samples as they were recorded, and only where its manager has said that it takes them.
void replayToChannel()
{
    throw CORBA::NO_IMPLEMENT(0, CORBA::COMPLETED_NO);
}

// A record has one data rate class.
void additionalDataRate()
{
    throw CORBA::NO_IMPLEMENT(0, CORBA::COMPLETED_NO);
}

// A loop is as long as its bytes, not as its seconds: clients ask for one by the values of the channel.
void loopRecording()
{
    throw QD_ZLK::IF_ZLK_c_Chan::exChan(QD_ZLK::IF_ZLK_c_Chan::CHAN_FAILED,
                                        "the recorder does not record in a loop of seconds");
}

// It says of what kind the receivers are, and not where: they are named by neither address nor port. What replays to
// somebody is a channel, whose manager is told where to come for the samples.
ZelkoCommon::ServiceStatus replayToReceivers()
{
    return ZelkoCommon::ServiceStatus::NotOffered;
}

ZelkoCommon::ServiceStatus otherSpeeds()
{
    return ZelkoCommon::ServiceStatus::SpeedNotOffered;
}

} // namespace ZelkoRecorder::notOffered
