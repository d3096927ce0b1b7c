#pragma once

#include <console/session/subsystemstatus.h>

#include <QAbstractItemModel>

#include <memory>
#include <vector>

namespace ZelkoConsole {

/// The sub systems of a session with the devices that stand below them on the client's tree, in the order in which they
/// came. Two columns: the name, with a sign for the state, and the state in words.
///
/// The devices of a sub system that gets lost stay in the list, not available, until it is back and has others. GUI
/// thread.
class DeviceListModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column : int { NameColumn, StateColumn, ColumnCount };

    explicit DeviceListModel(QObject* parent = nullptr);
    ~DeviceListModel() override;

    /// The sub systems of the list, without devices so far; in place of those before.
    void setSubSystems(const QStringList& names);

    /// The state of a sub system. When it gets connected its devices are read from the tree, and followed from there
    /// on. Nothing happens for a name that is not in the list.
    void setStatus(const QString& subSystem, const SubSystemStatus& status);

    /// Name of the sub system that the index is, or whose device it is; empty for an invalid index.
    QString subSystem(const QModelIndex& index) const;

    /// Name of the device; empty for a sub system.
    QString device(const QModelIndex& index) const;

    /// Whether the device can be used now; false for a sub system.
    bool isAvailable(const QModelIndex& index) const;

    QModelIndex subSystemIndex(const QString& subSystem) const;
    /// Invalid if there is no such device.
    QModelIndex deviceIndex(const QString& subSystem, const QString& device) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    class SubSystem;
    struct Device;

    SubSystem* subSystemAt(const QModelIndex& index) const;
    const Device* deviceAt(const QModelIndex& index) const;
    QVariant subSystemData(const SubSystem& subSystem, int column, int role) const;
    QVariant deviceData(const SubSystem& subSystem, const Device& device, int column, int role) const;
    int rowOf(const SubSystem* subSystem) const;
    void rowsChanged(const QModelIndex& parent);

    std::vector<std::unique_ptr<SubSystem>> m_subSystems;
};

} // namespace ZelkoConsole
