#pragma once

#include <QMainWindow>

#include <memory>

class QSettings;
class QSplitter;

namespace ZelkoConsole {

class ConnectionBadge;
class ConsoleUser;
class DeviceListModel;
class DeviceListView;
class OpenRecordWindows;
class RecordPane;
class ReplayDeck;
class Session;
class UserMenu;
class UserMessages;

/// The console's main window: devices on the left, the recordings of the chosen one on the right with what can be done
/// to them, below them the selected one on a bar with the channel to record and replay on, the user in the corner, the
/// state of the connection below. While it lives, messages for the user are shown in a box of it, and so is what a
/// recorder refused or was not sent.
class ConsoleWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// `session`, `user` and `settings` outlive the window. Places and columns are read from `settings` and written
    /// when the window is closed.
    ConsoleWindow(Session* session, ConsoleUser* user, QSettings* settings, QWidget* parent = nullptr);
    ~ConsoleWindow() override;

    DeviceListView* devices() const { return m_devices; }
    RecordPane* records() const { return m_records; }
    ReplayDeck* replay() const { return m_replay; }
    ConnectionBadge* badge() const { return m_badge; }
    UserMenu* userMenu() const { return m_userMenu; }
    UserMessages* messages() const { return m_messages.get(); }

    /// Shows what the console is and its version; blocks until that is closed.
    void showAbout();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* makeContent();
    QWidget* makeDevicePane();
    QWidget* makeWorkPane();
    void makeMenus();
    void makeUserButton();
    void makeStatusBar();
    void showChoice();
    bool leaveDevice();
    bool leaveUser();
    bool isAsking() const;
    void statusChanged(const QString& subSystem);
    void writeRefused(const QString& subSystem, const QString& reason);
    void writeNotSent(const QString& subSystem, const QString& reason);
    void restorePlaces();

    Session* const m_session;
    ConsoleUser* const m_user;
    QSettings* const m_settings;
    DeviceListModel* m_deviceModel;
    DeviceListView* m_devices;
    RecordPane* m_records;
    ReplayDeck* m_replay;
    QSplitter* m_splitter;
    ConnectionBadge* m_badge;
    UserMenu* m_userMenu;
    std::unique_ptr<UserMessages> m_messages;
    std::unique_ptr<OpenRecordWindows> m_windows;
};

} // namespace ZelkoConsole
