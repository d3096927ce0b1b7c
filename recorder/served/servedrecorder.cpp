#include <recorder/served/servedrecorder.h>

#include <recorder/store/devicestore.h>

namespace ZelkoRecorder {

ServedRecorder::ServedRecorder() = default;
ServedRecorder::~ServedRecorder() = default;

bool ServedRecorder::addDevice(const DeviceIdentity& identity, const DevicePlan& plan, QString* error)
{
    if (m_devices.contains(identity.id)) {
        *error = QStringLiteral("there are two devices \"%1\"").arg(identity.id);
        return false;
    }
    if (!DeviceStore(plan.folder).open(error)) {
        return false;
    }
    m_devices.emplace(identity.id, std::make_unique<ServedDevice>(m_tree, identity, plan));
    return true;
}

void ServedRecorder::close()
{
    m_devices.clear();
}

} // namespace ZelkoRecorder
