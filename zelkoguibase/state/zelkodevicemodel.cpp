#include <zelkoguibase/state/zelkodevicemodel.h>

#include "channelpseudodevice_p.h"

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <valuecore/node.h>
#include <valuecore/nodeptr.h>
#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/state/localzelkovalues.h>
#include <zelkobase/state/offereddevice.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QTimer>

#include <algorithm>
#include <utility>
#include <vector>

namespace ZelkoGUI {

namespace names = zelko::names;
using ZelkoCommon::AbstractServerConnectionData;
using ZelkoCommon::ConnectionType;

namespace {

enum class ConnectionState { DevicesSeen = 0, Connected = 1, Disconnected = 2 };

constexpr int workstationPort = 8004;

void traceError(const QString& text, int line)
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceError)) {
        _Q_Trace(text, __FILE__, line);
    }
}

template <typename T>
const Value<T>* findValue(const QString& path)
{
    return Tree::Instance()->Find<Value<T>>(path);
}

} // namespace

struct ZelkoDeviceModel::Private
{
    Private(ZelkoDeviceModel* model, std::shared_ptr<AbstractServerConnectionData> data);

    QString devicePath(const QString& device) const { return clientBasePath + QLatin1Char('/') + device; }

    QStringList devices;
    RecordItemMapModel* const records;
    const std::shared_ptr<AbstractServerConnectionData> connectionData;
    ConnectionState state = ConnectionState::Disconnected;
    const QString subSystem;
    const ZelkoCommon::VtConnectData vtConnectData;
    const QString clientBasePath;
    bool followDevice = true;
    QString currentDevice;
    QString channelDevice; // the last real one
    QString tooltip;
    NodeObservingPtr clientNode;
    std::vector<std::unique_ptr<NodeObservingPtr>> nodes;
    std::vector<std::unique_ptr<ValueObservingPtr<Value<bool>>>> availabilities;
    ValueObservingPtr<Value<QString>> deviceId;
    QTimer refreshSoon;
};

ZelkoDeviceModel::Private::Private(ZelkoDeviceModel* model, std::shared_ptr<AbstractServerConnectionData> data)
    : records(new RecordItemMapModel(model))
    , connectionData(std::move(data))
    , subSystem(connectionData->GetConfiguration()->GetCurrentSubSystem())
    , vtConnectData(connectionData->getConnData(subSystem, ConnectionType::Client))
    , clientBasePath(connectionData->getClientBasePath(subSystem, ConnectionType::Client))
    , clientNode(model)
    , deviceId(model)
{
    refreshSoon.setSingleShot(true);
    refreshSoon.setInterval(0);
}

ZelkoDeviceModel::ZelkoDeviceModel(const std::shared_ptr<AbstractServerConnectionData>& connectionData)
    : d(std::make_unique<Private>(this, connectionData))
{
    using Data = AbstractServerConnectionData;
    connect(&d->refreshSoon, &QTimer::timeout, this, &ZelkoDeviceModel::refreshDevices);
    connect(connectionData.get(), &Data::si_allTicsConnected, this, &ZelkoDeviceModel::sl_zelkoConnected);
    connect(connectionData.get(), &Data::si_allTicsDisconnected, this, &ZelkoDeviceModel::sl_zelkoDisconnected);
    connect(connectionData.get(), &Data::si_deviceNodeAdded, this, [this](const QString& path) {
        if (path.startsWith(d->devicePath(QString()))) {
            refreshDevices();
        }
    });
}

ZelkoDeviceModel::ZelkoDeviceModel(const std::shared_ptr<AbstractServerConnectionData>& connectionData,
                                   const ZelkoCommon::LocalZelkoValues& localValues)
    : ZelkoDeviceModel(connectionData)
{
    d->followDevice = false;
    d->deviceId = localValues.valueDeviceId().get();
}

ZelkoDeviceModel::~ZelkoDeviceModel() = default;

const QStringList& ZelkoDeviceModel::deviceList() const
{
    return d->devices;
}

ZelkoCommon::AbstractRecordListModel* ZelkoDeviceModel::recordModel() const
{
    return d->records;
}

const QString& ZelkoDeviceModel::currentDevice() const
{
    return d->currentDevice;
}

const QString& ZelkoDeviceModel::deviceTooltip() const
{
    return d->tooltip;
}

bool ZelkoDeviceModel::isReady() const
{
    return !d->devices.isEmpty() && !d->currentDevice.isEmpty() && d->currentDevice != channelPseudoDevice;
}

ZelkoCommon::VtConnectData ZelkoDeviceModel::getVtConnectData() const
{
    return d->vtConnectData;
}

bool ZelkoDeviceModel::GetServerVtConnectionData(ZelkoCommon::VtConnectData& data) const
{
    data.port = workstationPort;
    if (const auto* const host = findValue<QString>(names::serverOnWorkstation)) {
        data.host = host->GetValue();
    }
    const bool isFound = !data.host.isEmpty() || d->connectionData->GetIPConnectionInformation(QString(), data);
    if (isFound) {
        data.ipAddress = data.host;
    }
    return isFound;
}

// The connection data have all sub systems of the site, each with a connection of its own.
void ZelkoDeviceModel::sl_zelkoConnected(const QString& subSystem)
{
    if (subSystem != d->subSystem) {
        return;
    }
    traceError(QStringLiteral("******* Connected to ZELKO ******"), __LINE__);
    d->state = ConnectionState::Connected;
    d->clientNode.CreateOrGetNode(d->clientBasePath);
    refreshDevices();
}

void ZelkoDeviceModel::sl_zelkoDisconnected(const QString& subSystem)
{
    if (subSystem == d->subSystem) {
        d->state = ConnectionState::Disconnected;
        resetDeviceValues();
    }
}

void ZelkoDeviceModel::observeDeviceValues()
{
    refreshDevices();
}

void ZelkoDeviceModel::resetDeviceValues()
{
    d->devices.clear();
    d->records->disconnect();
    tellDevices();
}

// Slots may refresh, which makes the list anew.
void ZelkoDeviceModel::tellDevices()
{
    Q_EMIT devicesRefreshed();
    Q_EMIT devicesRefreshed(QStringList(d->devices));
}

// Slots of the record model may refresh as well, so the list is filled in one go.
void ZelkoDeviceModel::refreshDevices()
{
    d->devices.clear();
    const QString previous = std::exchange(d->currentDevice, QString());
    d->records->disconnect();
    d->nodes.clear();
    d->availabilities.clear();
    QStringList usable;
    for (TreeItem* const item : d->clientNode ? d->clientNode->GetTreeItems() : std::vector<TreeItem*>()) {
        const Node* const node = item->GetNode(QString());
        if (node && observeDevice(node->GetPathName())) {
            usable.append(item->GetName());
        }
    }
    d->devices = usable;
    updateCurrentDeviceAndNotify(previous);
}

// A device without its availability is followed all the same: when the value comes, its node tells of a new child.
bool ZelkoDeviceModel::observeDevice(const QString& path)
{
    auto node = std::make_unique<NodeObservingPtr>(this);
    node->GetFromTree(path);
    if (!ZelkoCommon::isOfferedDevice(path)) {
        return false;
    }
    d->nodes.push_back(std::move(node));
    auto available = std::make_unique<ValueObservingPtr<Value<bool>>>(this);
    if (!available->GetFromTree(names::availablePath(path))) {
        return false;
    }
    d->availabilities.push_back(std::move(available));
    return (*d->availabilities.back())->GetValue();
}

void ZelkoDeviceModel::updateCurrentDeviceAndNotify(const QString& previous)
{
    if (!d->followDevice || d->state == ConnectionState::Disconnected) {
        return;
    }
    if (!d->devices.isEmpty()) {
        d->state = ConnectionState::DevicesSeen;
        if (d->devices.contains(previous)) {
            setCurrentDevice(previous);
        } else if (previous == channelPseudoDevice && d->devices.contains(d->channelDevice)) {
            setCurrentDevice(d->channelDevice);
        } else {
            setCurrentDevice(d->devices.constFirst());
        }
    }
    tellDevices();
}

// The name is copied, since it may be one of the list or the current one, and slots of the record model may refresh.
// Where that has made another device the current one, nothing is left to be done for this one.
void ZelkoDeviceModel::setCurrentDevice(const QString& device)
{
    if (!d->followDevice) {
        return;
    }
    const QString wanted = device;
    d->currentDevice = wanted;
    d->records->disconnect();
    if (d->currentDevice == wanted) {
        showDevice(wanted);
    }
}

// Without a name the path would be that of all devices.
void ZelkoDeviceModel::showDevice(const QString& device)
{
    d->tooltip = device;
    const QString path = d->devicePath(device);
    if (!device.isEmpty() && Tree::Instance()->Find<Node>(path)) {
        d->tooltip += composedTooltip(path);
        d->records->connect(names::recordMapPath(path));
    } else {
        traceError(QStringLiteral("invalid device path"), __LINE__);
    }
    if (d->deviceId && d->deviceId->GetValue().isEmpty()) {
        d->deviceId->SetValue(d->currentDevice, this);
        Q_EMIT si_currentDeviceChanged(d->deviceId->GetValue());
    }
}

QString ZelkoDeviceModel::composedTooltip(const QString& devicePath) const
{
    QString text;
    if (const auto* const address = findValue<QString>(names::adminPath(devicePath, names::ipAddress))) {
        text += QStringLiteral("\nIp: ") + address->GetValue();
    }
    if (const auto* const version = findValue<QString>(names::versionPath(devicePath, names::firmwareVersion))) {
        text += QStringLiteral("\nFW: ") + version->GetValue();
    }
    return text + QStringLiteral("\nXG: ") +
           (currentDeviceSupportsXg() ? QStringLiteral("supported") : QStringLiteral("not supported"));
}

void ZelkoDeviceModel::setChannelDevice(const QString& device)
{
    d->followDevice = true;
    if (device != channelPseudoDevice) {
        d->channelDevice = device;
    }
    d->currentDevice = device;
    updateCurrentDeviceAndNotify(device);
}

bool ZelkoDeviceModel::currentDeviceSupportsXg() const
{
    if (!d->clientNode) {
        return false;
    }
    const QString path = d->clientNode->GetPathName() + QLatin1Char('/') + d->currentDevice;
    const auto* const supported = findValue<bool>(names::adminPath(path, names::supportsXGInterface));
    return supported && supported->GetValue();
}

// What is observed here are the client node, the nodes of devices, their availabilities and the device ID. The handles
// must not be made anew while one of what they point to is notifying, so the refresh waits for the next turn.
void ZelkoDeviceModel::Update(Observable* source, TChangeCode code)
{
    if (code == TChangeCode::ValueChanged && source == d->deviceId.get()) {
        const QString device = d->deviceId->GetValue();
        setCurrentDevice(device);
        Q_EMIT si_currentDeviceChanged(device);
    } else if (code == TChangeCode::ValueChanged || code == TChangeCode::ChildAdded) {
        d->refreshSoon.start();
    } else if (code == TChangeCode::ChildRemoved) {
        std::erase_if(d->nodes, [source](const auto& node) { return node->get() == source; });
        d->refreshSoon.start();
    }
}

} // namespace ZelkoGUI
