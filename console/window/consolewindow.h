#pragma once

#include <QMainWindow>

class QSettings;
class QSplitter;

namespace ZelkoConsole {

class ConnectionBadge;
class DeviceListModel;
class DeviceListView;
class RecordPane;
class Session;

/// The console's main window: devices on the left, the recordings of the chosen one on the right, the state of the
/// connection below.
class ConsoleWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// `session` and `settings` outlive the window. Places and columns are read from `settings` and written when the
    /// window is closed.
    ConsoleWindow(Session* session, QSettings* settings, QWidget* parent = nullptr);
    ~ConsoleWindow() override;

    DeviceListView* devices() const { return m_devices; }
    RecordPane* records() const { return m_records; }
    ConnectionBadge* badge() const { return m_badge; }

    /// Shows what the console is and its version; blocks until that is closed.
    void showAbout();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* makeContent();
    QWidget* makeDevicePane();
    void makeMenus();
    void makeStatusBar();
    void showChoice();
    void statusChanged(const QString& subSystem);
    void restorePlaces();

    Session* const m_session;
    QSettings* const m_settings;
    DeviceListModel* m_deviceModel;
    DeviceListView* m_devices;
    RecordPane* m_records;
    QSplitter* m_splitter;
    ConnectionBadge* m_badge;
};

} // namespace ZelkoConsole
