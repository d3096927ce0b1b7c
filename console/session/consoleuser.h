#pragma once

#include <console/session/knownuser.h>
#include <console/session/subsystemstatus.h>

#include <host/userrights.h>

#include <QObject>
#include <QString>
#include <QStringList>

namespace ZelkoConsole {

class Session;

/// Who works at the console. Keeps UserRights at what he may do, as the recorder takes him for that he works
/// with; while there is no connection, as far as the console knows by itself. GUI thread.
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

    /// He works with the devices of a sub system from now on: what he may do is what that one takes him for. With those
    /// of all where the name is empty, as at first.
    void workAt(const QString& subSystem);

    /// What he is: what the recorder takes him for that he works with; the least where there are more than one.
    ZelkoCommon::Role role() const;

    /// Whether he works with recorders of which none admits him, and one said so.
    bool isDenied() const;

    /// Makes a known user the one who works here; false, and no change, for another name.
    bool switchTo(const QString& name);

    /// Makes somebody the one who works here. Whether the recorders admit him shows in the state of the sub systems.
    void logIn(const ZelkoCommon::LinkCredentials& credentials);

    /// Nobody in particular works here.
    void logOut();

    /// How often somebody began to work here. An answer of a recorder belongs to one of these times.
    int attempt() const { return m_attempt; }

    /// What a user of that role may do, in the words of the library.
    static UserRights::Rights rightsOf(ZelkoCommon::Role role);

Q_SIGNALS:
    /// `name`, `role` or `isDenied` is another; UserRights tells so already.
    void changed();

    /// The recorder that he works with does not admit who has logged in; once for each time that he did, and with the
    /// `attempt()` that it is the answer to. The reason is without a full stop.
    void denied(const QString& reason, int attempt);

private:
    const KnownUser* find(const QString& name) const;
    QStringList subSystemsAtHand() const;
    bool isAnyAtHand(LinkState state) const;
    void statusChanged(const QString& subSystem);
    void answered(const QString& subSystem);
    void become(const ZelkoCommon::LinkCredentials& user, ZelkoCommon::Role expected);
    void tell();

    Session& m_session;
    QString m_name;
    QString m_subSystem;
    ZelkoCommon::Role m_expected = ZelkoCommon::Role::Viewer; // while no recorder has said anything
    QString m_toldName;
    ZelkoCommon::Role m_toldRole = ZelkoCommon::Role::Viewer;
    bool m_toldDenied = false;
    bool m_waitsForAnswer = false; // to a log-in
    int m_attempt = 0;
};

} // namespace ZelkoConsole
