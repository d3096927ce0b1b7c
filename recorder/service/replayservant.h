#pragma once

#include <recorder/service/devicecalls.h>

#include <zelkoidl/recorderservice.hh>

namespace ZelkoRecorder {

/// Replays records as the ORB sees it. Served on threads of the ORB, on which a replay is started and ended, too: it
/// needs no thread of its own. The results are numbers of ZelkoCommon::ServiceStatus.
class ReplayServant final : public POA_QD_ZLK::IF_ZELKO_Replay, public PortableServer::RefCountServantBase
{
public:
    explicit ReplayServant(DeviceCalls calls);

    /// In real time, which is a speed of 100; 0 is taken for it. The data rate class is that of the record, whatever is
    /// given.
    CORBA::Long StartReplay(const char* device, const char* record, QD_ZLK::DataRateClass dataRate,
                            CORBA::LongLong start, CORBA::LongLong stop, CORBA::Long speed) override;
    CORBA::Long StartReplayReceivers(const char* device, const char* record, QD_ZLK::DataRateClass dataRate,
                                     CORBA::LongLong start, CORBA::LongLong stop, CORBA::Long speed,
                                     QD_ZLK::EndpointKind receivers) override;

    /// These three: NotReplaying for a record that is not being replayed, or is not there.
    /// @{
    CORBA::Long PauseReplay(const char* device, const char* record) override;
    CORBA::Long ContinueReplay(const char* device, const char* record) override;
    CORBA::Long StopReplay(const char* device, const char* record) override;
    /// @}

private:
    using ReplayChange = StoreStatus (DeviceService::*)(const QString& record);

    CORBA::Long onReplay(const char* device, const char* record, ReplayChange change) const;
    CORBA::Long act(const char* device, const char* record,
                    const std::function<ZelkoCommon::ServiceStatus(DeviceService&)>& call) const;

    const DeviceCalls m_calls;
};

} // namespace ZelkoRecorder
