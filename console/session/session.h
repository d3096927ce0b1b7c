#pragma once

#include <console/session/knownuser.h>
#include <console/session/subsystemstatus.h>

#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace ZelkoCommon {
class AbstractServerConnectionData;
}

namespace ZelkoConsole {

/// The sub systems that the console works with and how far each one is reachable. What they have stands on the client's
/// tree. GUI thread.
class Session : public QObject
{
    Q_OBJECT

public:
    explicit Session(QObject* parent = nullptr);
    ~Session() override;

    /// Names, in the order of the site; the same for as long as the session lives.
    virtual QStringList subSystems() const = 0;

    /// `Connecting` for a name that is not there.
    virtual SubSystemStatus status(const QString& subSystem) const = 0;

    /// The connection to the sub systems as the library sees it; the same one, and not null, as long as the session
    /// lives. Which sub system is the current one in its configuration is up to whoever works with it.
    virtual std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> connectionData() const = 0;

    /// Users for whom the session can act without anybody being asked, those who may less first; the same for as long
    /// as it lives. None in general.
    virtual const std::vector<KnownUser>& knownUsers() const;

    /// Who is named as its user where it was configured; empty in general.
    virtual QString configuredUser() const;

    /// Acts for a user from now on: the sub systems are connected anew, and what they said of the user before is
    /// forgotten. Nothing in general.
    virtual void actFor(const ZelkoCommon::LinkCredentials& user);

    /// What the recorder of a sub system takes the user for; nothing while that is not connected, or connected for the
    /// user before still.
    virtual std::optional<ZelkoCommon::Role> role(const QString& subSystem) const;

Q_SIGNALS:
    /// `status` of the sub system gives something else than before.
    void statusChanged(const QString& subSystem);

    /// A sub system did not take a change that was made here, for a reason in words for people; what was changed is
    /// again as it was.
    void writeRefused(const QString& subSystem, const QString& reason);

    /// A change that was made here was not sent to a sub system, for a reason in words for people that has nothing to
    /// do with the user; what was changed is again as it was.
    void writeNotSent(const QString& subSystem, const QString& reason);
};

} // namespace ZelkoConsole
