#include <console/devices/devicelistmodel.h>

#include "subsystementry_p.h"

#include <console/widgets/glyph.h>

#include <widgetbase/plaintooltip.h>

#include <algorithm>

namespace ZelkoConsole {

// The internal id of an index is 0 for a sub system and, for a device, one more than the row of its sub system.

DeviceListModel::DeviceListModel(QObject* parent)
    : QAbstractItemModel(parent)
{}

DeviceListModel::~DeviceListModel() = default;

void DeviceListModel::setSubSystems(const QStringList& names)
{
    beginResetModel();
    m_subSystems.clear();
    for (const QString& name : names) {
        m_subSystems.push_back(std::make_unique<SubSystem>(this, name));
    }
    endResetModel();
}

void DeviceListModel::setStatus(const QString& subSystem, const SubSystemStatus& status)
{
    const QModelIndex index = subSystemIndex(subSystem);
    if (index.isValid()) {
        subSystemAt(index)->setStatus(status);
        Q_EMIT dataChanged(index, index.siblingAtColumn(StateColumn));
        rowsChanged(index);
    }
}

QString DeviceListModel::subSystem(const QModelIndex& index) const
{
    const SubSystem* const found = subSystemAt(index);
    return found ? found->name : QString();
}

QString DeviceListModel::device(const QModelIndex& index) const
{
    const Device* const found = deviceAt(index);
    return found ? found->name : QString();
}

bool DeviceListModel::isAvailable(const QModelIndex& index) const
{
    const Device* const found = deviceAt(index);
    return found && subSystemAt(index)->status.isConnected() && found->isAvailable();
}

QModelIndex DeviceListModel::subSystemIndex(const QString& subSystem) const
{
    for (const auto& entry : m_subSystems) {
        if (entry->name == subSystem) {
            return index(rowOf(entry.get()), NameColumn);
        }
    }
    return {};
}

QModelIndex DeviceListModel::deviceIndex(const QString& subSystem, const QString& device) const
{
    const QModelIndex parent = subSystemIndex(subSystem);
    for (int row = 0; row < rowCount(parent); ++row) {
        const QModelIndex child = index(row, NameColumn, parent);
        if (parent.isValid() && this->device(child) == device) {
            return child;
        }
    }
    return {};
}

QModelIndex DeviceListModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent)) {
        return {};
    }
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : quintptr{0});
}

QModelIndex DeviceListModel::parent(const QModelIndex& child) const
{
    if (!child.isValid() || child.internalId() == 0) {
        return {};
    }
    return createIndex(static_cast<int>(child.internalId()) - 1, NameColumn, quintptr{0});
}

int DeviceListModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid()) {
        return static_cast<int>(m_subSystems.size());
    }
    const bool hasChildren = parent.internalId() == 0 && parent.column() == NameColumn;
    return hasChildren ? static_cast<int>(subSystemAt(parent)->devices.size()) : 0;
}

int DeviceListModel::columnCount(const QModelIndex&) const
{
    return ColumnCount;
}

QVariant DeviceListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const SubSystem& subSystem = *subSystemAt(index);
    const Device* const device = deviceAt(index);
    return device ? deviceData(subSystem, *device, index.column(), role)
                  : subSystemData(subSystem, index.column(), role);
}

QVariant DeviceListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return section == NameColumn ? tr("Device") : tr("State");
}

QVariant DeviceListModel::subSystemData(const SubSystem& subSystem, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return column == NameColumn ? subSystem.name : shortText(subSystem.status);
    case Qt::DecorationRole:
        return column == NameColumn ? QVariant(glyphIcon(glyphOf(subSystem.status))) : QVariant();
    case Qt::ToolTipRole:
        return guiHelper::plainToolTip(longText(subSystem.name, subSystem.status));
    default:
        return {};
    }
}

QVariant DeviceListModel::deviceData(const SubSystem& subSystem, const Device& device, int column, int role) const
{
    const bool available = subSystem.status.isConnected() && device.isAvailable();
    const QString word = available ? tr("available") : tr("not available");
    switch (role) {
    case Qt::DisplayRole:
        return column == NameColumn ? device.name : word;
    case Qt::DecorationRole:
        return column == NameColumn ? QVariant(glyphIcon(available ? Glyph::Good : Glyph::Idle)) : QVariant();
    case Qt::ToolTipRole:
        return guiHelper::plainToolTip(tr("Device %1 of %2: %3").arg(device.name, subSystem.name, word));
    default:
        return {};
    }
}

DeviceListModel::SubSystem* DeviceListModel::subSystemAt(const QModelIndex& index) const
{
    if (!index.isValid()) {
        return nullptr;
    }
    const QModelIndex top = index.internalId() == 0 ? index : index.parent();
    return m_subSystems[static_cast<std::size_t>(top.row())].get();
}

const DeviceListModel::Device* DeviceListModel::deviceAt(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == 0) {
        return nullptr;
    }
    return subSystemAt(index)->devices[static_cast<std::size_t>(index.row())].get();
}

int DeviceListModel::rowOf(const SubSystem* subSystem) const
{
    const auto found = std::find_if(m_subSystems.begin(), m_subSystems.end(),
                                    [subSystem](const auto& entry) { return entry.get() == subSystem; });
    return static_cast<int>(found - m_subSystems.begin());
}

void DeviceListModel::rowsChanged(const QModelIndex& parent)
{
    const int count = rowCount(parent);
    if (count > 0) {
        Q_EMIT dataChanged(index(0, NameColumn, parent), index(count - 1, StateColumn, parent));
    }
}

} // namespace ZelkoConsole
