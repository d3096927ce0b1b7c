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
    connect(&session, &Session::statusChanged, this, [this] { tell(false); });
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

Role ConsoleUser::role() const
{
    return m_session.role().value_or(m_expected);
}

bool ConsoleUser::switchTo(const QString& name)
{
    const KnownUser* const user = find(name);
    if (!user) {
        return false;
    }
    m_session.actFor(user->credentials);
    become(name, user->role);
    return true;
}

void ConsoleUser::logIn(const LinkCredentials& credentials)
{
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

void ConsoleUser::become(const QString& name, Role expected)
{
    m_expected = expected;
    const bool isAnotherName = m_name != name;
    m_name = name;
    tell(isAnotherName);
}

void ConsoleUser::tell(bool isAnotherName)
{
    const Role now = role();
    const bool isAnotherRole = std::exchange(m_told, now) != now;
    UserRights::Instance()->SetUser(m_name, rightsOf(now));
    if (isAnotherName || isAnotherRole) {
        Q_EMIT changed();
    }
}

} // namespace ZelkoConsole
