#pragma once

#include <console/session/subsystemstatus.h>

#include <QWidget>

class QLabel;
class QProgressBar;
class QSortFilterProxyModel;

namespace ZelkoConsole {

class DeviceRecords;
class RecordTableView;
class SelectionKeeper;

/// The recordings of one device: title, table, their number and what is selected, and how far the first load is.
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

private:
    QWidget* makeHead();
    QWidget* makeFoot();
    void updateTitle();
    void updateTexts();
    void updateCount();
    void updateSelection();
    void updateProgress();

    QString m_subSystem;
    QString m_device;
    SubSystemStatus m_status;
    DeviceRecords* m_records;
    QSortFilterProxyModel* m_proxy;
    RecordTableView* m_table;
    SelectionKeeper* m_keeper;
    QLabel* m_title;
    QLabel* m_subtitle;
    QLabel* m_count;
    QLabel* m_selection;
    QLabel* m_progressLabel;
    QProgressBar* m_progress;
};

} // namespace ZelkoConsole
