#include <host/userrights.h>

UserRights::UserRights() = default;
UserRights::~UserRights() = default;

UserRights* UserRights::Instance()
{
    static UserRights instance;
    return &instance;
}

bool UserRights::isAllowed(Right right)
{
    return Instance()->m_rights.testFlag(right);
}

bool UserRights::DeleteRecordsAllowed()
{
    return isAllowed(DeleteRecords);
}

bool UserRights::ArchivingAllowed()
{
    return isAllowed(Archiving);
}

bool UserRights::HistoryCommentAllowed()
{
    return isAllowed(HistoryComment);
}

bool UserRights::ResetRecordAllowed()
{
    return isAllowed(ResetRecord);
}

bool UserRights::RemoteConfigAllowed()
{
    return isAllowed(RemoteConfig);
}

bool UserRights::PerformBiteAllowed()
{
    return isAllowed(PerformBite);
}

bool UserRights::AdminAllowed()
{
    return isAllowed(Admin);
}

void UserRights::SetUser(const QString& user, Rights rights)
{
    if (user == m_user && rights == m_rights) {
        return;
    }
    m_user = user;
    m_rights = rights;
    Q_EMIT UpdateUserRights(user);
}
