#pragma once

#include <console/records/emptystate.h>
#include <console/session/subsystemstatus.h>

#include <QTimer>
#include <QWidget>

#include <memory>

class ActiveDeviceControl;
class QLabel;
class QProgressBar;

namespace ZelkoCommon {
class AbstractServerConnectionData;
}

namespace ZelkoGUI {
class RecordItemMapModel;
class ZelkoServerGUIController;
} // namespace ZelkoGUI

namespace ZelkoConsole {

class DeviceRecords;
class ElidedLabel;
class Heading;
class RecordActions;
class RecordSortModel;
class RecordTableView;
class SelectionKeeper;
class SelectionReporter;
class SelectionSummary;

/// The recordings of one device with what can be done to them: title, their number, a tool bar and the table with its
/// context menu; for the status bar of a window what is selected and how far the first load is.
///
/// All actions go through one controller, and the table shows the records of that controller's model.
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

    /// State of that sub system.
    void setStatus(const SubSystemStatus& status);

    RecordTableView* table() const { return m_table; }
    DeviceRecords* records() const { return m_records; }
    ZelkoGUI::ZelkoServerGUIController* controller() const { return m_controller.get(); }
    RecordActions* actions() const { return m_actions; }

    /// To be put into a status bar, which owns it from there on.
    QWidget* statusWidget() const { return m_statusWidget; }

private:
    void arrange();
    void connectParts();
    QWidget* makeHead();
    QWidget* makeStatusWidget();
    void updateTitle();
    void updateTexts();
    bool isSettling() const;
    EmptyState emptyStateNow() const;
    void updateCount();
    void updateProgress();

    const std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> m_connection;
    QString m_subSystem;
    QString m_device;
    SubSystemStatus m_status;
    QTimer m_settling; // runs for a moment after another device was chosen
    ActiveDeviceControl* m_activeDevice;
    std::unique_ptr<ZelkoGUI::ZelkoServerGUIController> m_controller;
    ZelkoGUI::RecordItemMapModel* m_model; // the controller's
    DeviceRecords* m_records;
    RecordSortModel* m_proxy;
    RecordTableView* m_table;
    SelectionKeeper* m_keeper;
    SelectionReporter* m_reporter;
    SelectionSummary* m_summary;
    Heading* m_title;
    ElidedLabel* m_subtitle;
    QLabel* m_count;
    ElidedLabel* m_selection;
    QLabel* m_progressLabel;
    QProgressBar* m_progress;
    QLabel* m_progressCount;
    QWidget* m_statusWidget;
    RecordActions* m_actions = nullptr;
};

} // namespace ZelkoConsole
