#pragma once

#include <console/records/emptystate.h>
#include <console/session/subsystemstatus.h>

#include <QTimer>
#include <QWidget>

#include <memory>

class ActiveDeviceControl;
class QSettings;
class QTableView;
class QToolBar;

namespace ZelkoCommon {
class AbstractServerConnectionData;
}

namespace ZelkoGUI {
class RecordListWidget;
class ZelkoServerGUIController;
} // namespace ZelkoGUI

namespace guiHelper {
class ElidedLabel;
}

namespace ZelkoConsole {

class DeviceRecords;
class Heading;
class RecordActions;
class RecordTable;
class SelectionSummary;
class WorkDevice;

/// The recordings of one device with what can be done to them: a title with the device to work on beside it, and below
/// it the record list of the library with all its parts; for the status bar of a window what is selected.
class RecordPane : public QWidget
{
    Q_OBJECT

public:
    /// What `connection` has as its current sub system follows the device that is shown.
    explicit RecordPane(const std::shared_ptr<ZelkoCommon::AbstractServerConnectionData>& connection,
                        QWidget* parent = nullptr);
    ~RecordPane() override;

    /// Shows the recordings of a device of a sub system; of none where `device` is empty. The same again keeps
    /// selection and scroll position.
    void setDevice(const QString& subSystem, const QString& device);

    /// Whether it shows those of that device.
    bool shows(const QString& subSystem, const QString& device) const
    {
        return m_subSystem == subSystem && m_device == device;
    }

    /// @name Whose recordings are shown
    /// @{
    const QString& subSystem() const { return m_subSystem; }
    const QString& device() const { return m_device; }
    /// @}

    /// State of that sub system.
    void setStatus(const SubSystemStatus& status);

    ZelkoGUI::RecordListWidget* list() const { return m_list; }
    QTableView* table() const { return m_view; }
    RecordTable* recordTable() const { return m_table; }

    /// Keeps how the table is arranged; the list itself does so only in the end.
    void savePlaces(QSettings& settings) const;

    /// The tool bar of the list.
    QToolBar* toolBar() const;

    DeviceRecords* records() const { return m_records; }
    ZelkoGUI::ZelkoServerGUIController* controller() const { return m_controller.get(); }
    RecordActions* actions() const { return m_actions; }

    WorkDevice* workDevice() const { return m_workDevice; }

    /// To be put into a status bar, which owns it from there on.
    QWidget* statusWidget() const { return m_statusWidget; }

private:
    void arrange();
    void dressList();
    void connectParts();
    QWidget* makeHead();
    QWidget* makeStatusWidget();
    void updateTitle();
    void updateEmptyState();
    bool isSettling() const;
    EmptyState emptyStateNow() const;

    const std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> m_connection;
    QString m_subSystem;
    QString m_device;
    SubSystemStatus m_status;
    QTimer m_settling; // runs for a moment after another device was chosen
    ActiveDeviceControl* m_activeDevice;
    WorkDevice* m_workDevice;
    std::unique_ptr<ZelkoGUI::ZelkoServerGUIController> m_controller;
    DeviceRecords* m_records;
    ZelkoGUI::RecordListWidget* m_list;
    QTableView* m_view; // the list's
    RecordTable* m_table;
    SelectionSummary* m_summary;
    Heading* m_title;
    guiHelper::ElidedLabel* m_subtitle;
    guiHelper::ElidedLabel* m_selection;
    QWidget* m_statusWidget;
    RecordActions* m_actions = nullptr;
};

} // namespace ZelkoConsole
