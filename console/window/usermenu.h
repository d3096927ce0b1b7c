#pragma once

#include <QMenu>
#include <QString>

class QActionGroup;

namespace ZelkoConsole {

class ConsoleUser;

/// Who works at the console, and how another one comes to: the users that the console knows by themselves, each a
/// click; where it knows none, a dialog to log in, and a way to log out. GUI thread.
class UserMenu : public QMenu
{
    Q_OBJECT

public:
    /// `user` outlives the menu.
    explicit UserMenu(ConsoleUser* user, QWidget* parent = nullptr);
    ~UserMenu() override;

    /// Asks for the password of a user, or for a name too where that is empty, and has him work here; nothing changes
    /// when the dialog is left. Blocks until then.
    void logIn(const QString& name);

    /// The present user in a few words; with what he is where the name does not say it.
    QString userText() const;

Q_SIGNALS:
    /// `userText` is another.
    void userTextChanged();

private:
    void addKnownUsers();
    void addLogin();
    void update();

    ConsoleUser* const m_user;
    QActionGroup* m_known;
    QAction* m_logOut = nullptr; // where there are no known users
};

} // namespace ZelkoConsole
