#pragma once

#include <console/devices/devicelistmodel.h>
#include <console/soon.h>
#include <console/treeobserver.h>

#include <valuecore/nodeptr.h>
#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>

namespace ZelkoConsole {

/// One device of a sub system and its sign of availability, where the tree has one.
struct DeviceListModel::Device
{
    Device(const QString& deviceName, TreeObserver* observer)
        : name(deviceName)
        , node(observer)
        , available(observer)
    {}

    bool isAvailable() const { return available && available->GetValue(); }

    const QString name;
    NodeObservingPtr node;
    ValueObservingPtr<Value<bool>> available;
};

/// One sub system of the list: follows the node that holds its devices. Changes of the tree are looked at once per turn
/// of the event loop, when the tree is at rest.
class DeviceListModel::SubSystem
{
public:
    SubSystem(DeviceListModel* model, const QString& name);

    void setStatus(const SubSystemStatus& status);

    const QString name;
    SubSystemStatus status;
    std::vector<std::unique_ptr<Device>> devices;

private:
    void readTree();
    QStringList namesOnTree() const;
    void removeOthers(const QStringList& names);
    void appendNew(const QStringList& names);
    bool has(const QString& device) const;

    DeviceListModel* const m_model;
    Soon m_soon{[this] { readTree(); }};
    TreeObserver m_observer;
    NodeObservingPtr m_node;
};

} // namespace ZelkoConsole
