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
    , m_toldName(m_name)
{
    connect(&session, &Session::statusChanged, this, &ConsoleUser::statusChanged);
    if (!switchTo(ZelkoCommon::roleName(Role::Operator))) {
        tell();
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
        tell();
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
    become(user->credentials, user->role);
    return true;
}

void ConsoleUser::logIn(const LinkCredentials& credentials)
{
    m_waitsForAnswer = !credentials.user.isEmpty();
    become(credentials, Role::Viewer);
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
    tell();
    if (m_waitsForAnswer && subSystemsAtHand().contains(subSystem)) {
        answered(subSystem);
    }
}

// A connection for which nobody has a role yet is that of the user before.
void ConsoleUser::answered(const QString& subSystem)
{
    const SubSystemStatus status = m_session.status(subSystem);
    const bool isDenial = status.state == LinkState::Denied;
    const bool isAdmission = status.isConnected() && m_session.role(subSystem);
    m_waitsForAnswer = !isDenial && !isAdmission;
    if (isDenial) {
        Q_EMIT denied(status.reason, m_attempt);
    }
}

// The session may tell at once that what it knew of the user before is forgotten: it is another one by then.
void ConsoleUser::become(const LinkCredentials& user, Role expected)
{
    ++m_attempt;
    m_expected = expected;
    m_name = user.user;
    m_session.actFor(user);
    tell();
}

void ConsoleUser::tell()
{
    const Role roleNow = role();
    const bool deniedNow = isDenied();
    const bool isAnotherName = std::exchange(m_toldName, m_name) != m_name;
    const bool isAnotherRole = std::exchange(m_toldRole, roleNow) != roleNow;
    const bool isAnotherAnswer = std::exchange(m_toldDenied, deniedNow) != deniedNow;
    UserRights::Instance()->SetUser(m_name, rightsOf(roleNow));
    if (isAnotherName || isAnotherRole || isAnotherAnswer) {
        Q_EMIT changed();
    }
}

} // namespace ZelkoConsole
