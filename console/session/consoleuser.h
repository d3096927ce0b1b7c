#pragma once

#include <console/session/knownuser.h>

#include <host/userrights.h>

#include <QObject>
#include <QString>
#include <QStringList>

namespace ZelkoConsole {

class Session;

/// Who works at the console. Keeps UserRights at what he may do, as the recorders take him for; while there is no
/// connection, as far as the console knows by itself. GUI thread.
class ConsoleUser : public QObject
{
    Q_OBJECT

public:
    /// Begins as the operator where the session knows such a user, otherwise as whoever the site file names. The
    /// session outlives this object, with which nobody is logged in any more.
    explicit ConsoleUser(Session& session, QObject* parent = nullptr);
    ~ConsoleUser() override;

    /// Whom `switchTo` takes, those who may less first; none with a site file.
    QStringList knownUsers() const;

    /// Empty for nobody in particular.
    const QString& name() const { return m_name; }

    /// What he is: what the recorders that are connected take him for, the least of them where they differ.
    ZelkoCommon::Role role() const;

    /// Makes a known user the one who works here; false, and no change, for another name.
    bool switchTo(const QString& name);

    /// Makes somebody the one who works here. Whether the recorders admit him shows in the state of the sub systems.
    void logIn(const ZelkoCommon::LinkCredentials& credentials);

    /// Nobody in particular works here.
    void logOut();

    /// What a user of that role may do, in the words of the library.
    static UserRights::Rights rightsOf(ZelkoCommon::Role role);

Q_SIGNALS:
    /// `name` or `role` is another; UserRights tells so already.
    void changed();

private:
    const KnownUser* find(const QString& name) const;
    void become(const QString& name, ZelkoCommon::Role expected);
    void tell(bool isAnotherName);

    Session& m_session;
    QString m_name;
    ZelkoCommon::Role m_expected = ZelkoCommon::Role::Viewer; // while no recorder has said anything
    ZelkoCommon::Role m_told = ZelkoCommon::Role::Viewer;
};

} // namespace ZelkoConsole
