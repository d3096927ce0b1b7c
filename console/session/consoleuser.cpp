#include <console/session/consoleuser.h>

#include <console/session/session.h>

#include <algorithm>
#include <utility>

namespace ZelkoConsole {

using ZelkoCommon::LinkCredentials;
using ZelkoCommon::Role;

ConsoleUser::ConsoleUser(Session& session, QObject* parent)
    : QObject(parent)
    , m_session(session)
    , m_name(session.configuredUser())
{
    connect(&session, &Session::statusChanged, this, &ConsoleUser::statusChanged);
    if (!switchTo(ZelkoCommon::roleName(Role::Operator))) {
        tell(false);
    }
}

ConsoleUser::~ConsoleUser()
{
    UserRights::Instance()->SetUser({}, {});
}

QStringList ConsoleUser::knownUsers() const
{
    QStringList names;
    for (const KnownUser& user : m_session.knownUsers()) {
        names.append(user.credentials.user);
    }
    return names;
}

void ConsoleUser::workAt(const QString& subSystem)
{
    if (m_subSystem != subSystem) {
        m_subSystem = subSystem;
        tell(false);
    }
}

Role ConsoleUser::role() const
{
    std::optional<Role> least;
    for (const QString& name : subSystemsAtHand()) {
        const auto role = m_session.role(name);
        if (role && (!least || *role < *least)) {
            least = role;
        }
    }
    return least.value_or(m_expected);
}

bool ConsoleUser::isDenied() const
{
    return isAnyAtHand(LinkState::Denied) && !isAnyAtHand(LinkState::Connected);
}

bool ConsoleUser::switchTo(const QString& name)
{
    const KnownUser* const user = find(name);
    if (!user) {
        return false;
    }
    m_waitsForAnswer = false;
    m_session.actFor(user->credentials);
    become(name, user->role);
    return true;
}

void ConsoleUser::logIn(const LinkCredentials& credentials)
{
    m_waitsForAnswer = !credentials.user.isEmpty();
    m_session.actFor(credentials);
    become(credentials.user, Role::Viewer);
}

void ConsoleUser::logOut()
{
    logIn({});
}

UserRights::Rights ConsoleUser::rightsOf(Role role)
{
    UserRights::Rights rights;
    if (role >= Role::Operator) {
        rights |= UserRights::DeleteRecords | UserRights::Archiving | UserRights::HistoryComment |
                  UserRights::ResetRecord | UserRights::PerformBite;
    }
    if (role >= Role::Administrator) {
        rights |= UserRights::RemoteConfig | UserRights::Admin;
    }
    return rights;
}

const KnownUser* ConsoleUser::find(const QString& name) const
{
    const auto& users = m_session.knownUsers();
    const auto found =
        std::find_if(users.begin(), users.end(), [&](const KnownUser& user) { return user.credentials.user == name; });
    return found == users.end() ? nullptr : &*found;
}

QStringList ConsoleUser::subSystemsAtHand() const
{
    return m_subSystem.isEmpty() ? m_session.subSystems() : QStringList(m_subSystem);
}

bool ConsoleUser::isAnyAtHand(LinkState state) const
{
    const QStringList names = subSystemsAtHand();
    return std::any_of(names.begin(), names.end(),
                       [this, state](const QString& name) { return m_session.status(name).state == state; });
}

// Only the one that changed has answered: another one may still say what it said of the user before.
void ConsoleUser::statusChanged(const QString& subSystem)
{
    tell(false);
    if (m_waitsForAnswer && subSystemsAtHand().contains(subSystem)) {
        answered(m_session.status(subSystem));
    }
}

void ConsoleUser::answered(const SubSystemStatus& status)
{
    const bool isDenial = status.state == LinkState::Denied;
    m_waitsForAnswer = !isDenial && !status.isConnected();
    if (isDenial) {
        Q_EMIT denied(status.reason);
    }
}

void ConsoleUser::become(const QString& name, Role expected)
{
    m_expected = expected;
    const bool isAnotherName = m_name != name;
    m_name = name;
    tell(isAnotherName);
}

void ConsoleUser::tell(bool isAnotherName)
{
    const Role roleNow = role();
    const bool deniedNow = isDenied();
    const bool isAnotherRole = std::exchange(m_toldRole, roleNow) != roleNow;
    const bool isAnotherAnswer = std::exchange(m_toldDenied, deniedNow) != deniedNow;
    UserRights::Instance()->SetUser(m_name, rightsOf(roleNow));
    if (isAnotherName || isAnotherRole || isAnotherAnswer) {
        Q_EMIT changed();
    }
}

} // namespace ZelkoConsole
