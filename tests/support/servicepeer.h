#pragma once

#include <zelkobase/orb/orb.h>
#include <zelkobase/service/servicestatus.h>

#include <zelkoidl/recorderservice.hh>

#include <QStringList>

#include <functional>
#include <map>
#include <memory>

/// A recorder's service for tests: real servants that note each call as a line of text, "addHistory D1 R1 text", and
/// answer as they are told. All functions may be called on any thread.
class ServicePeer
{
public:
    /// Publishes the entry point. `orb` outlives the peer; 127.0.0.1 and `port` are its address for everybody, which
    /// has to be that of a proxy for calls of the same process to leave it. A call that is held back is let go by the
    /// destructor.
    ServicePeer(ZelkoCommon::Orb& orb, quint16 port);
    ~ServicePeer();

    /// The calls so far, without those that only find the service.
    QStringList calls() const;

    /// How often the administration was asked for.
    int adminRequests() const;

    /// Whether every call came over the network.
    bool wasCalledOverNetwork() const;

    void forgetCalls();

    /// What an operation returns from now on; 0 at first.
    void setAnswer(const QString& operation, unsigned long code);

    /// Run in an operation after it was noted, to throw for instance; an empty one takes it away.
    void setAction(const QString& operation, std::function<void()> action);

    /// Holds every call back after it was noted, until it is set back.
    void setHeld(bool held);

    /// Gives a nil reference for the administration.
    void setWithoutAdmin(bool without);

    /// What getRecord gives.
    void setRecord(const QD_ZLK::RecordInfo& record);

    /// The entry point leaves the ORB and comes back; references to the old administration lead nowhere.
    void withdraw();
    void publish();

    /// Gives the administration a new identity, as a restart does.
    void restart();

    /// The ID of a copy, and of an export.
    static QString newId() { return QStringLiteral("R-new"); }

    struct Script;

private:
    ZelkoCommon::Orb& m_orb;
    const quint16 m_port;
    const std::shared_ptr<Script> m_script;
    bool m_isPublished = false;
};
