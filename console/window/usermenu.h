#pragma once

#include <QMenu>
#include <QPointer>
#include <QString>

#include <functional>

class QActionGroup;

namespace ZelkoConsole {

class ConsoleUser;
class LoginDialog;

/// Who works at the console, and how another one comes to: the users that the console knows by themselves, each a
/// click; where it knows none, a dialog to log in, and a way to log out. GUI thread.
class UserMenu : public QMenu
{
    Q_OBJECT

public:
    /// False: the present user goes on to work here.
    using MayLeave = std::function<bool()>;

    /// `user` outlives the menu. `mayLeave` is asked before another one comes to work here, and may take its time.
    UserMenu(ConsoleUser* user, MayLeave mayLeave, QWidget* parent = nullptr);
    ~UserMenu() override;

    /// Asks for the password of a user, or for a name too where that is empty, and has him work here; nothing changes
    /// when the dialog is left. Blocks until then. When the recorder does not admit him, he is asked again.
    void logIn(const QString& name);

    /// The present user in a few words; with what he is where the name does not say it, or that he has no
    /// access.
    QString userText() const;

Q_SIGNALS:
    /// `userText` is another.
    void userTextChanged();

private:
    void addKnownUsers();
    void addLogin();
    void become(const std::function<void()>& change);
    void ask(const QString& name, const QString& reason);
    void askAgain(const QString& reason, int attempt);
    void updateEntries();

    ConsoleUser* const m_user;
    const MayLeave m_mayLeave;
    QPointer<LoginDialog> m_dialog; // that is open
    QActionGroup* m_known;
    QAction* m_logOut = nullptr; // where there are no known users
};

} // namespace ZelkoConsole
