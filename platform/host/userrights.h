#pragma once

#include <host/host_export.h>

#include <QFlags>
#include <QObject>
#include <QString>

/// What the user who is logged in at the host application may do. The host sets it, everybody else asks. Nobody is
/// logged in at first, and then nothing is allowed. GUI thread only.
class HOST_EXPORT UserRights final : public QObject
{
    Q_OBJECT

public:
    enum Right : unsigned {
        DeleteRecords = 1U << 0U,  ///< delete records and change what may be deleted
        Archiving = 1U << 1U,      ///< copy records between devices and archives
        HistoryComment = 1U << 2U, ///< write comments on records
        ResetRecord = 1U << 3U,    ///< reset a record to the state at rest
        RemoteConfig = 1U << 4U,   ///< change the configuration of servers
        PerformBite = 1U << 5U,    ///< start the built-in test of a device
        Admin = 1U << 6U           ///< restart and shut down devices
    };
    Q_DECLARE_FLAGS(Rights, Right)

    /// The one object of the process, which lives as long as it does.
    static UserRights* Instance();

    static bool DeleteRecordsAllowed();
    static bool ArchivingAllowed();
    static bool HistoryCommentAllowed();
    static bool ResetRecordAllowed();
    static bool RemoteConfigAllowed();
    static bool PerformBiteAllowed();
    static bool AdminAllowed();

    /// For the host: who is logged in, with an empty name for nobody, and what he may do. Tells so if either differs.
    void SetUser(const QString& user, Rights rights);

    QString GetUser() const { return m_user; }
    Rights GetRights() const { return m_rights; }

Q_SIGNALS:
    /// Another user, or other rights of the same one; they hold already.
    void UpdateUserRights(QString user);

private:
    UserRights();
    ~UserRights() override;

    static bool isAllowed(Right right);

    QString m_user;
    Rights m_rights;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(UserRights::Rights)
