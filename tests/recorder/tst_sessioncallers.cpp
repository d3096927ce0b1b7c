#include <recorder/served/sessioncallers.h>

#include <faultproxy.h>
#include <testusers.h>

#include <valuecore/tree.h>
#include <zelkobase/connection/treelink.h>
#include <zelkobase/orb/callingsession.h>
#include <zelkobase/orb/orb.h>
#include <zelkoidl/treelink.hh>

#include <QTest>

#include <mutex>

using namespace ZelkoRecorder;
using ZelkoTest::TestUsers;

namespace {

constexpr int patience = 30'000;

// A service that keeps who called it.
class Service final : public POA_ZelkoTreeLink::Subscriber, public PortableServer::RefCountServantBase
{
public:
    explicit Service(CallerOfCall callers)
        : m_callers(std::move(callers))
    {}
    void deliver(ZelkoTreeLink::SessionId, CORBA::ULong, const ZelkoTreeLink::Batch&, ZelkoTreeLink::Checksum) override
    {
        const std::lock_guard lock(m_mutex);
        m_last = m_callers();
    }
    Caller last()
    {
        const std::lock_guard lock(m_mutex);
        return m_last;
    }

private:
    const CallerOfCall m_callers;
    std::mutex m_mutex;
    Caller m_last;
};

std::optional<UserFile> usersOf(const TestUsers& users)
{
    QString error;
    QStringList warnings;
    return UserFile::load(users.path(), &error, &warnings);
}

// A recorder with a service, and a client of both, which go through a proxy: calls of one process to itself never leave
// it.
struct Fixture
{
    Fixture()
        : proxy(orb.port())
        , server(orb, tree, {}, {}, admission(authenticator))
        , service(new Service(callersBySession(server)))
    {
        orb.publish("Service", service);
        const CORBA::Object_var object = orb.remoteObject("127.0.0.1", proxy.port(), "Service");
        remote = ZelkoTreeLink::Subscriber::_unchecked_narrow(object);
    }
    ~Fixture() { service->_remove_ref(); }

    std::unique_ptr<ZelkoCommon::TreeLink> connectAs(const ZelkoCommon::LinkCredentials& who)
    {
        ZelkoCommon::LinkOptions options;
        options.credentials = who;
        return std::make_unique<ZelkoCommon::TreeLink>(
            orb, &copy, ZelkoCommon::ZelkoConfiguration::SubSystem{"north", "127.0.0.1", proxy.port()}, options);
    }
    // A session of a client that hears of nothing.
    ZelkoTreeLink::SessionId attachAs(const ZelkoCommon::LinkCredentials& who)
    {
        const CORBA::Object_var object = orb.remoteObject("127.0.0.1", proxy.port(), ZelkoTreeLink::OBJECT_KEY);
        const auto link = ZelkoTreeLink::TreeServer_var(ZelkoTreeLink::TreeServer::_unchecked_narrow(object));
        const ZelkoTreeLink::Credentials credentials{who.user.toUtf8().constData(), who.password.toUtf8().constData()};
        return link->attach(ZelkoTreeLink::PROTOCOL_VERSION, credentials, remote);
    }
    Caller call()
    {
        remote->deliver(0, 0, {}, 0);
        return service->last();
    }

    const TestUsers users;
    Authenticator authenticator{usersOf(users)};
    ZelkoCommon::Orb orb{ZelkoCommon::OrbOptions()};
    FaultProxy proxy;
    Tree tree;
    Tree copy;
    TreeLinkServer server;
    Service* const service;
    ZelkoTreeLink::Subscriber_var remote;
};

} // namespace

class TestSessionCallers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void areKnownByTheirSession_data();
    void areKnownByTheirSession();
    void areNobodyWithoutASession();
    void areNobodyWhenTheirSessionHasEnded();
    void areWhoTheLinkActsForNow();
    void areNobodyForANumberThatIsGuessed();
    void areNobodyForANumberOfAnotherHost();
};

void TestSessionCallers::areKnownByTheirSession_data()
{
    QTest::addColumn<Role>("role");
    for (const Role role : ZelkoCommon::allRoles) {
        QTest::newRow(roleName(role).data()) << role;
    }
}

void TestSessionCallers::areKnownByTheirSession()
{
    QFETCH(const Role, role);
    Fixture f;
    const auto link = f.connectAs(TestUsers::credentials(role));
    QTRY_VERIFY_WITH_TIMEOUT(link->isConnected(), patience);
    QCOMPARE(f.call(), (Caller{roleName(role), role}));
}

void TestSessionCallers::areNobodyWithoutASession()
{
    Fixture f;
    QCOMPARE(f.call(), Caller());
}

void TestSessionCallers::areNobodyWhenTheirSessionHasEnded()
{
    Fixture f;
    auto link = f.connectAs(TestUsers::credentials(Role::Administrator));
    QTRY_VERIFY_WITH_TIMEOUT(link->isConnected(), patience);
    link.reset();
    QCOMPARE(f.call(), Caller());
}

void TestSessionCallers::areWhoTheLinkActsForNow()
{
    Fixture f;
    const auto link = f.connectAs(TestUsers::credentials(Role::Viewer));
    QTRY_COMPARE_WITH_TIMEOUT(link->role(), Role::Viewer, patience);
    link->setCredentials(TestUsers::credentials(Role::Operator));
    QVERIFY(link->role() != Role::Viewer); // none, or the new one already
    QTRY_COMPARE_WITH_TIMEOUT(link->role(), Role::Operator, patience);
    QTRY_COMPARE_WITH_TIMEOUT(f.call(), (Caller{"operator", Role::Operator}), patience);
    link->setCredentials({"operator", "wrong"});
    QTRY_VERIFY_WITH_TIMEOUT(link->lastError().contains("access is denied"), patience);
    QCOMPARE(f.call(), Caller());
}

void TestSessionCallers::areNobodyForANumberThatIsGuessed()
{
    Fixture f;
    const auto link = f.connectAs(TestUsers::credentials(Role::Administrator));
    QTRY_VERIFY_WITH_TIMEOUT(link->isConnected(), patience);
    const ZelkoCommon::CallingSession::Pass guess(4711, "giop:tcp:127.0.0.1:" + std::to_string(f.proxy.port()));
    QCOMPARE(f.call(), Caller());
}

// The number is the right one, overheard. In the name of the same host it is good.
void TestSessionCallers::areNobodyForANumberOfAnotherHost()
{
    Fixture f;
    const auto session = f.attachAs(TestUsers::credentials(Role::Administrator));
    FaultProxy elsewhere(f.orb.port());
    elsewhere.setHost(2);
    const CORBA::Object_var object = f.orb.remoteObject("127.0.0.1", elsewhere.port(), "Service");
    const auto own = std::exchange(f.remote, ZelkoTreeLink::Subscriber::_unchecked_narrow(object));
    const ZelkoCommon::CallingSession::Pass stolen(session, "giop:tcp:127.0.0.1:" + std::to_string(elsewhere.port()));
    QCOMPARE(f.call(), Caller());
    f.remote = own;
    const ZelkoCommon::CallingSession::Pass pass(session, "giop:tcp:127.0.0.1:" + std::to_string(f.proxy.port()));
    QCOMPARE(f.call(), (Caller{"administrator", Role::Administrator}));
}

QTEST_GUILESS_MAIN(TestSessionCallers)
#include "tst_sessioncallers.moc"
