#include <console/window/usermenu.h>

#include <console/session/consoleuser.h>
#include <console/window/logindialog.h>

#include <QActionGroup>

#include <utility>

namespace ZelkoConsole {

using ZelkoCommon::Role;

namespace {

QString roleText(Role role)
{
    switch (role) {
    case Role::Viewer:
        return UserMenu::tr("viewer");
    case Role::Operator:
        return UserMenu::tr("operator");
    case Role::Administrator:
        return UserMenu::tr("administrator");
    }
    return {};
}

// A name of somebody else's making stands in a menu just so.
QString literal(QString name)
{
    return name.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

UserMenu::UserMenu(ConsoleUser* user, MayLeave mayLeave, QWidget* parent)
    : QMenu(tr("&User"), parent)
    , m_user(user)
    , m_mayLeave(std::move(mayLeave))
    , m_known(new QActionGroup(this))
{
    setObjectName(QStringLiteral("userMenu"));
    if (user->knownUsers().isEmpty()) {
        addLogin();
    } else {
        addKnownUsers();
    }
    connect(user, &ConsoleUser::changed, this, &UserMenu::updateEntries);
    // A dialog in the midst of what a connection tells would hold up the rest of it.
    connect(user, &ConsoleUser::denied, this, &UserMenu::askAgain, Qt::QueuedConnection);
    updateEntries();
}

UserMenu::~UserMenu() = default;

void UserMenu::addKnownUsers()
{
    for (const QString& name : m_user->knownUsers()) {
        QAction* const action = m_known->addAction(literal(name));
        action->setCheckable(true);
        action->setData(name);
        action->setStatusTip(tr("Work here as %1.").arg(name));
        connect(action, &QAction::triggered, this, [this, name] { become([this, name] { m_user->switchTo(name); }); });
    }
    addActions(m_known->actions());
}

void UserMenu::addLogin()
{
    QAction* const login = addAction(tr("Log &In…"));
    login->setObjectName(QStringLiteral("logIn"));
    login->setStatusTip(tr("Work here as somebody whom the recorders know."));
    connect(login, &QAction::triggered, this, [this] { logIn(m_user->name()); });
    m_logOut = addAction(tr("Log &Out"));
    m_logOut->setObjectName(QStringLiteral("logOut"));
    m_logOut->setStatusTip(tr("Look at records and do nothing else."));
    connect(m_logOut, &QAction::triggered, this, [this] { become([this] { m_user->logOut(); }); });
}

// The window may be closed, and this menu with it, while somebody is asked.
void UserMenu::become(const std::function<void()>& change)
{
    const QPointer<UserMenu> self(this);
    const bool mayLeave = m_mayLeave();
    if (self && mayLeave) {
        change();
    } else if (self) {
        updateEntries(); // the click has marked another one
    }
}

void UserMenu::logIn(const QString& name)
{
    ask(name, QString());
}

// Somebody else may have begun to work here since the recorder's answer.
void UserMenu::askAgain(const QString& reason, int attempt)
{
    if (!m_dialog && attempt == m_user->attempt()) {
        ask(m_user->name(), reason);
    }
}

// The window may be closed, and this menu with it, while the dialog is open.
void UserMenu::ask(const QString& name, const QString& reason)
{
    const QPointer<UserMenu> self(this);
    const QPointer<LoginDialog> dialog = new LoginDialog(name, parentWidget());
    m_dialog = dialog;
    if (!reason.isEmpty()) {
        dialog->showReason(reason);
    }
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (self && dialog && accepted) {
        become([this, credentials = dialog->credentials()] { m_user->logIn(credentials); });
    }
    delete dialog;
}

QString UserMenu::userText() const
{
    const QString name = m_user->name();
    const QString role = m_user->isDenied() ? shortText({LinkState::Denied, {}}) : roleText(m_user->role());
    if (name.isEmpty()) {
        return tr("not logged in");
    }
    return name == role ? name : tr("%1 (%2)").arg(name, role);
}

void UserMenu::updateEntries()
{
    for (QAction* const action : m_known->actions()) {
        action->setChecked(action->data().toString() == m_user->name());
    }
    if (m_logOut) {
        m_logOut->setEnabled(!m_user->name().isEmpty());
    }
    Q_EMIT userTextChanged();
}

} // namespace ZelkoConsole
