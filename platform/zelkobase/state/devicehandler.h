#pragma once

#include <zelkobase/state/zelkobasestate_export.h>

#include <QObject>
#include <QStringList>

#include <memory>
#include <utility>
#include <vector>

namespace ZelkoCommon {

class AbstractServerConnectionData;

/// The devices of all sub systems, as they stand on the client's tree, and news of them. A sub system that is not
/// connected has none.
///
/// GUI thread. Changes of the tree are looked at once per turn of the event loop, when the tree is at rest; the signals
/// come then, and what this object answers is the new state already.
class ZELKOBASESTATE_EXPORT DeviceHandler : public QObject
{
    Q_OBJECT

public:
    /// Pairs of a device and its sub system.
    using Devices = std::vector<std::pair<QString, QString>>;

    explicit DeviceHandler(std::shared_ptr<AbstractServerConnectionData> connectionData, QObject* parent = nullptr);
    ~DeviceHandler() override;

    /// Appends the devices of a sub system to `devices`, in the order in which they came; none for one that is not
    /// known. With `allowedOnly` without those that cannot be used at the moment: devices that are not available, and
    /// those of a type that users are not offered.
    void GetDevices(const QString& subSystem, Devices& devices, bool allowedOnly) const;

    /// The same for all sub systems, one after the other.
    void GetAllDevices(Devices& devices, bool allowedOnly) const;

    /// Appends the names of the sub systems, in the order of the configuration.
    void GetAllSubsystems(QStringList& subSystems) const;

Q_SIGNALS:
    /// A sub system got connected, with the devices that it has, or was lost with all of its devices.
    void signalDeviceHandlerSubsystemUpdated(const QString& subSystem);

    /// Devices became usable, or cannot be used any more.
    void signalDeviceHandlerAllowedDeviceUpdated();

    /// Devices came to a connected sub system, usable or not.
    void signalDevicesAdded(const QString& subSystem, const QStringList& devices);

    /// A device went from a connected sub system. Before the news of those that came, once for each.
    void signalDeviceRemoved(const QString& subSystem, const QString& device);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoCommon
