#include <zelkobase/state/devicehandler.h>

#include "subsystemdevices_p.h"

#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>

#include <map>

namespace ZelkoCommon {

struct DeviceHandler::Private
{
    Private(DeviceHandler* handler, std::shared_ptr<AbstractServerConnectionData> data)
        : q(handler)
        , connectionData(std::move(data))
    {}

    void follow(const QString& subSystem);
    void tell(const QString& subSystem, const SubSystemDevices::News& news) const;

    DeviceHandler* const q;
    const std::shared_ptr<AbstractServerConnectionData> connectionData;
    std::map<QString, std::unique_ptr<SubSystemDevices>> connected;
};

void DeviceHandler::Private::follow(const QString& subSystem)
{
    connected[subSystem] = std::make_unique<SubSystemDevices>(
        connectionData->getClientBasePath(subSystem, ConnectionType::Client),
        [this, subSystem](const SubSystemDevices::News& news) { tell(subSystem, news); });
}

void DeviceHandler::Private::tell(const QString& subSystem, const SubSystemDevices::News& news) const
{
    for (const QString& device : news.removed) {
        Q_EMIT q->signalDeviceRemoved(subSystem, device);
    }
    if (!news.added.isEmpty()) {
        Q_EMIT q->signalDevicesAdded(subSystem, news.added);
    }
    if (news.isAllowedChanged) {
        Q_EMIT q->signalDeviceHandlerAllowedDeviceUpdated();
    }
}

DeviceHandler::DeviceHandler(std::shared_ptr<AbstractServerConnectionData> connectionData, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this, std::move(connectionData)))
{
    QStringList subSystems;
    GetAllSubsystems(subSystems);
    for (const QString& subSystem : subSystems) {
        if (d->connectionData->isConnected(subSystem)) {
            d->follow(subSystem);
        }
    }
    connect(d->connectionData.get(), &AbstractServerConnectionData::si_allTicsConnected, this,
            [this](const QString& subSystem) {
                d->follow(subSystem);
                Q_EMIT signalDeviceHandlerSubsystemUpdated(subSystem);
            });
    connect(d->connectionData.get(), &AbstractServerConnectionData::si_allTicsDisconnected, this,
            [this](const QString& subSystem) {
                d->connected.erase(subSystem);
                Q_EMIT signalDeviceHandlerSubsystemUpdated(subSystem);
            });
}

DeviceHandler::~DeviceHandler() = default;

void DeviceHandler::GetDevices(const QString& subSystem, Devices& devices, bool allowedOnly) const
{
    const auto found = d->connected.find(subSystem);
    if (found == d->connected.end()) {
        return;
    }
    for (const auto& device : found->second->devices()) {
        if (device->isAllowed || !allowedOnly) {
            devices.emplace_back(device->name, subSystem);
        }
    }
}

void DeviceHandler::GetAllDevices(Devices& devices, bool allowedOnly) const
{
    QStringList subSystems;
    GetAllSubsystems(subSystems);
    for (const QString& subSystem : subSystems) {
        GetDevices(subSystem, devices, allowedOnly);
    }
}

void DeviceHandler::GetAllSubsystems(QStringList& subSystems) const
{
    for (const auto& subSystem : d->connectionData->GetConfiguration()->SubSystems()) {
        subSystems.append(subSystem.name);
    }
}

} // namespace ZelkoCommon
