#include <recorder/service/devicecalls.h>

#include <recorder/store/recordid.h>
#include <zelkobase/orb/corbatext.h>

namespace ZelkoRecorder {

using ZelkoCommon::fromCorba;
using ZelkoCommon::ServiceStatus;

DeviceCalls::DeviceCalls(std::shared_ptr<CallGate> gate, CallRights rights, Devices devices)
    : m_gate(std::move(gate))
    , m_rights(std::move(rights))
    , m_devices(std::move(devices))
{}

ServiceStatus DeviceCalls::onDevice(Action action, const char* device, const Call& call) const
{
    if (!m_rights.allow(action)) {
        return ServiceStatus::NotAllowed;
    }
    const CallGate::Pass pass(*m_gate);
    DeviceService* const service = m_devices(fromCorba(device));
    return service ? call(*service) : ServiceStatus::NoSuchDevice;
}

// What cannot be the name of a record's folder never becomes a part of a path.
ServiceStatus DeviceCalls::onRecord(Action action, const char* device, const char* record, const Call& call) const
{
    return onDevice(action, device, [&](DeviceService& service) {
        return isRecordId(fromCorba(record)) ? call(service) : ServiceStatus::NoSuchRecord;
    });
}

} // namespace ZelkoRecorder
