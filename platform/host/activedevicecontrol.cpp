#include <host/activedevicecontrol.h>

ActiveDeviceControl::ActiveDeviceControl(QObject* parent)
    : QObject(parent)
{}

ActiveDeviceControl::~ActiveDeviceControl() = default;

void ActiveDeviceControl::setActiveDevice(const QString& deviceID, const QString& subSystem)
{
    const QString newSubSystem = deviceID.isEmpty() ? QString() : subSystem;
    if (deviceID == m_deviceID && newSubSystem == m_subSystem) {
        return;
    }
    m_deviceID = deviceID;
    m_subSystem = newSubSystem;
    refreshActiveDevice();
}

void ActiveDeviceControl::refreshActiveDevice()
{
    Q_EMIT si_activeDeviceChanged(m_deviceID, m_subSystem);
}

void ActiveDeviceControl::deleteDevice(const QString& deviceID, const QString& subSystem)
{
    if (deviceID == m_deviceID && subSystem == m_subSystem) {
        m_deviceID.clear();
        m_subSystem.clear();
    }
    Q_EMIT si_activeDeviceDeleted(deviceID, subSystem);
}
