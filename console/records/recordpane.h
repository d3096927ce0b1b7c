#pragma once

#include <console/session/subsystemstatus.h>

#include <QWidget>

class QLabel;
class QProgressBar;

namespace ZelkoConsole {

class DeviceRecords;
class ElidedLabel;
class Heading;
class RecordSortModel;
class RecordTableView;
class SelectionKeeper;
class SelectionSummary;

/// The recordings of one device: title, their number and the table; for the status bar of a window what is selected and
/// how far the first load is.
class RecordPane : public QWidget
{
    Q_OBJECT

public:
    explicit RecordPane(QWidget* parent = nullptr);
    ~RecordPane() override;

    /// Shows the recordings of a device of a sub system; of none where `device` is empty. The same again keeps
    /// selection and scroll position.
    void setDevice(const QString& subSystem, const QString& device);

    /// State of that sub system.
    void setStatus(const SubSystemStatus& status);

    RecordTableView* table() const { return m_table; }
    DeviceRecords* records() const { return m_records; }

    /// To be put into a status bar, which owns it from there on.
    QWidget* statusWidget() const { return m_statusWidget; }

private:
    void connectParts();
    QWidget* makeHead();
    QWidget* makeStatusWidget();
    void updateTitle();
    void updateTexts();
    void updateCount();
    void updateProgress();

    QString m_subSystem;
    QString m_device;
    SubSystemStatus m_status;
    DeviceRecords* m_records;
    RecordSortModel* m_proxy;
    RecordTableView* m_table;
    SelectionKeeper* m_keeper;
    SelectionSummary* m_summary;
    Heading* m_title;
    ElidedLabel* m_subtitle;
    QLabel* m_count;
    ElidedLabel* m_selection;
    QLabel* m_progressLabel;
    QProgressBar* m_progress;
    QLabel* m_progressCount;
    QWidget* m_statusWidget;
};

} // namespace ZelkoConsole
