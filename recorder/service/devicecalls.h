#pragma once

#include <recorder/served/deviceservice.h>
#include <recorder/service/callgate.h>
#include <recorder/service/callrights.h>
#include <recorder/service/statusmapping.h>

#include <functional>
#include <memory>

namespace ZelkoRecorder {

/// What every call on a record has in common: may the caller do it, is there such a device, can there be such a record,
/// and does the recorder still run. Threads of the ORB.
class DeviceCalls
{
public:
    /// The device of that name, or null. Any thread, within the gate.
    using Devices = std::function<DeviceService*(const QString& device)>;

    /// What is asked of a device.
    using Call = std::function<ZelkoCommon::ServiceStatus(DeviceService&)>;

    DeviceCalls(std::shared_ptr<CallGate> gate, CallRights rights, Devices devices);

    /// The status of `call`, or why it was not made. Throws as `CallGate::Pass` does when the recorder ends.
    ZelkoCommon::ServiceStatus onDevice(Action action, const char* device, const Call& call) const;

    /// The same for a call on a record of the device.
    ZelkoCommon::ServiceStatus onRecord(Action action, const char* device, const char* record, const Call& call) const;

private:
    const std::shared_ptr<CallGate> m_gate;
    const CallRights m_rights;
    const Devices m_devices;
};

} // namespace ZelkoRecorder
