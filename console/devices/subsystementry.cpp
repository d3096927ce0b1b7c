#include "subsystementry_p.h"

#include <console/treepaths.h>

#include <valuecore/node.h>

#include <algorithm>

namespace ZelkoConsole {

DeviceListModel::SubSystem::SubSystem(DeviceListModel* model, const QString& subSystemName)
    : name(subSystemName)
    , m_model(model)
    , m_observer([this](TChangeCode) { m_soon.ask(); })
    , m_node(&m_observer)
{}

void DeviceListModel::SubSystem::setStatus(const SubSystemStatus& newStatus)
{
    status = newStatus;
    if (status.isConnected()) {
        m_node.GetFromTree(treepath::devices(name));
        readTree();
    }
}

// A branch that is being taken down is no news about the devices: only a connected sub system can lose one.
void DeviceListModel::SubSystem::readTree()
{
    if (status.isConnected() && m_node) {
        const QStringList names = namesOnTree();
        removeOthers(names);
        appendNew(names);
    }
    for (const auto& device : devices) {
        const QString path = treepath::device(name, device->name);
        device->node.GetFromTree(path);
        device->available.GetFromTree(path + QLatin1Char('/') + zelko::names::zelkoAvailable);
    }
    m_model->rowsChanged(m_model->subSystemIndex(name));
}

QStringList DeviceListModel::SubSystem::namesOnTree() const
{
    QStringList names;
    for (TreeItem* const item : m_node->GetTreeItems()) {
        if (item->GetNode(QString())) {
            names.append(item->GetName());
        }
    }
    return names;
}

void DeviceListModel::SubSystem::removeOthers(const QStringList& names)
{
    const QModelIndex parent = m_model->subSystemIndex(name);
    for (int row = static_cast<int>(devices.size()) - 1; row >= 0; --row) {
        const auto position = devices.begin() + row;
        if (!names.contains((*position)->name)) {
            m_model->beginRemoveRows(parent, row, row);
            devices.erase(position);
            m_model->endRemoveRows();
        }
    }
}

void DeviceListModel::SubSystem::appendNew(const QStringList& names)
{
    const QModelIndex parent = m_model->subSystemIndex(name);
    for (const QString& device : names) {
        if (!has(device)) {
            const int row = static_cast<int>(devices.size());
            m_model->beginInsertRows(parent, row, row);
            devices.push_back(std::make_unique<Device>(device, &m_observer));
            m_model->endInsertRows();
        }
    }
}

bool DeviceListModel::SubSystem::has(const QString& device) const
{
    return std::any_of(devices.begin(), devices.end(), [&](const auto& known) { return known->name == device; });
}

} // namespace ZelkoConsole
