#include <recorder/service/replayservant.h>

#include <recorder/service/notoffered.h>

#include <zelkobase/orb/corbatext.h>

namespace ZelkoRecorder {

using ZelkoCommon::fromCorba;
using ZelkoCommon::ServiceStatus;

ReplayServant::ReplayServant(DeviceCalls calls)
    : m_calls(std::move(calls))
{}

CORBA::Long ReplayServant::act(const char* device, const char* record,
                               const std::function<ServiceStatus(DeviceService&)>& call) const
{
    return static_cast<CORBA::Long>(m_calls.onRecord(Action::Replay, device, record, call));
}

CORBA::Long ReplayServant::onReplay(const char* device, const char* record, ReplayChange change) const
{
    return act(device, record, [&](DeviceService& service) {
        return serviceStatus((service.*change)(fromCorba(record)), ServiceStatus::NotReplaying);
    });
}

CORBA::Long ReplayServant::StartReplay(const char* device, const char* record, QD_ZLK::DataRateClass,
                                       CORBA::LongLong start, CORBA::LongLong stop, CORBA::Long speed)
{
    return act(device, record, [&](DeviceService& service) {
        if (start < 0 || stop < 0 || speed < 0) {
            return ServiceStatus::BadArgument;
        }
        if (speed != 0 && speed != notOffered::realTimeReplay) {
            return notOffered::otherSpeeds();
        }
        return serviceStatus(
            service.startReplay(fromCorba(record), static_cast<quint64>(start), static_cast<quint64>(stop)));
    });
}

CORBA::Long ReplayServant::StartReplayReceivers(const char* device, const char* record, QD_ZLK::DataRateClass,
                                                CORBA::LongLong, CORBA::LongLong, CORBA::Long, QD_ZLK::EndpointKind)
{
    return act(device, record, [](DeviceService&) { return notOffered::replayToReceivers(); });
}

CORBA::Long ReplayServant::PauseReplay(const char* device, const char* record)
{
    return onReplay(device, record, &DeviceService::pauseReplay);
}

CORBA::Long ReplayServant::ContinueReplay(const char* device, const char* record)
{
    return onReplay(device, record, &DeviceService::continueReplay);
}

CORBA::Long ReplayServant::StopReplay(const char* device, const char* record)
{
    return onReplay(device, record, &DeviceService::stopReplay);
}

} // namespace ZelkoRecorder
