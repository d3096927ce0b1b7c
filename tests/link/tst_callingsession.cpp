#include "faultproxy.h"

#include <zelkobase/orb/callingsession.h>
#include <zelkobase/orb/orb.h>
#include <zelkoidl/treelink.hh>

#include <QtTest>

#include <mutex>
#include <vector>

using namespace ZelkoCommon;

namespace {

// Keeps for which session each call was made.
class Server final : public POA_ZelkoTreeLink::TreeServer, public PortableServer::RefCountServantBase
{
public:
    ZelkoTreeLink::SessionId attach(CORBA::ULong, const ZelkoTreeLink::Credentials&,
                                    ZelkoTreeLink::Subscriber_ptr) override
    {
        note();
        throw ZelkoTreeLink::Refused(ZelkoTreeLink::REFUSED_FULL, "");
    }
    void write(ZelkoTreeLink::SessionId, const ZelkoTreeLink::Batch&, ZelkoTreeLink::Checksum) override { note(); }
    void detach(ZelkoTreeLink::SessionId) override { note(); }

    std::vector<std::uint64_t> take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_sessions, {});
    }

private:
    void note()
    {
        const std::lock_guard lock(m_mutex);
        m_sessions.push_back(CallingSession::current());
    }

    std::mutex m_mutex;
    std::vector<std::uint64_t> m_sessions;
};

using Sessions = std::vector<std::uint64_t>;

// The numbers use all of their bytes, and the first one of them has its highest bit set.
constexpr std::uint64_t first = 0xf123456789abcdef;
constexpr std::uint64_t second = 0x0fedcba987654321;

} // namespace

class TestCallingSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();

    void isNoneOutsideOfACall();
    void isNoneForACallWithoutAPass();
    void isNamedInEachCall();
    void isNamedInTheFirstCallOfAConnection();
    void isNamedWhereTheCallIsRefused();
    void isToldToItsOwnAddressOnly();
    void endsWithItsPass();
    void isTheLastOneMadeForAnAddress();
    void movesWithItsPass();
    void isNoneForACallWithinTheProcess();

private:
    ZelkoTreeLink::TreeServer_ptr remote(const FaultProxy& proxy) const;
    std::string addressOf(const FaultProxy& proxy) const;

    std::unique_ptr<Orb> m_orb;
    Server* m_server = nullptr;
    std::unique_ptr<FaultProxy> m_here; // calls to the process itself would never leave it
    std::unique_ptr<FaultProxy> m_elsewhere;
};

void TestCallingSession::initTestCase()
{
    m_orb = std::make_unique<Orb>(OrbOptions());
    m_server = new Server;
    m_orb->publish("server", m_server);
    m_here = std::make_unique<FaultProxy>(m_orb->port());
    m_elsewhere = std::make_unique<FaultProxy>(m_orb->port());
}

void TestCallingSession::cleanupTestCase()
{
    m_server->_remove_ref();
    m_orb.reset();
}

void TestCallingSession::cleanup()
{
    m_server->take();
}

ZelkoTreeLink::TreeServer_ptr TestCallingSession::remote(const FaultProxy& proxy) const
{
    const CORBA::Object_var object = m_orb->remoteObject("127.0.0.1", proxy.port(), "server");
    return ZelkoTreeLink::TreeServer::_unchecked_narrow(object);
}

std::string TestCallingSession::addressOf(const FaultProxy& proxy) const
{
    return "giop:tcp:127.0.0.1:" + std::to_string(proxy.port());
}

void TestCallingSession::isNoneOutsideOfACall()
{
    QCOMPARE(CallingSession::current(), 0U);
}

void TestCallingSession::isNoneForACallWithoutAPass()
{
    const ZelkoTreeLink::TreeServer_var server = remote(*m_here);
    server->detach(0);
    QCOMPARE(m_server->take(), Sessions{0});
    QCOMPARE(CallingSession::lastCalledAddress(), addressOf(*m_here));
}

void TestCallingSession::isNamedInEachCall()
{
    const ZelkoTreeLink::TreeServer_var server = remote(*m_here);
    const CallingSession::Pass pass(first, addressOf(*m_here));
    server->detach(0);
    server->write(0, {}, 0);
    QCOMPARE(m_server->take(), (Sessions{first, first}));
}

void TestCallingSession::isNamedInTheFirstCallOfAConnection()
{
    const FaultProxy fresh(m_orb->port());
    const ZelkoTreeLink::TreeServer_var server = remote(fresh);
    const CallingSession::Pass pass(second, addressOf(fresh));
    server->detach(0);
    QCOMPARE(m_server->take(), Sessions{second});
}

void TestCallingSession::isNamedWhereTheCallIsRefused()
{
    const ZelkoTreeLink::TreeServer_var server = remote(*m_here);
    const CallingSession::Pass pass(first, addressOf(*m_here));
    QVERIFY_EXCEPTION_THROWN(server->attach(0, {}, ZelkoTreeLink::Subscriber::_nil()), ZelkoTreeLink::Refused);
    QCOMPARE(m_server->take(), Sessions{first});
}

void TestCallingSession::isToldToItsOwnAddressOnly()
{
    const ZelkoTreeLink::TreeServer_var here = remote(*m_here);
    const ZelkoTreeLink::TreeServer_var elsewhere = remote(*m_elsewhere);
    const CallingSession::Pass pass(first, addressOf(*m_here));
    elsewhere->detach(0);
    here->detach(0);
    elsewhere->detach(0);
    QCOMPARE(m_server->take(), (Sessions{0, first, 0}));
}

void TestCallingSession::endsWithItsPass()
{
    const ZelkoTreeLink::TreeServer_var server = remote(*m_here);
    {
        const CallingSession::Pass pass(first, addressOf(*m_here));
        server->detach(0);
    }
    server->detach(0);
    QCOMPARE(m_server->take(), (Sessions{first, 0}));
}

void TestCallingSession::isTheLastOneMadeForAnAddress()
{
    const ZelkoTreeLink::TreeServer_var server = remote(*m_here);
    const CallingSession::Pass older(first, addressOf(*m_here));
    {
        const CallingSession::Pass newer(second, addressOf(*m_here));
        server->detach(0);
    }
    server->detach(0);
    QCOMPARE(m_server->take(), (Sessions{second, first}));
}

void TestCallingSession::movesWithItsPass()
{
    const ZelkoTreeLink::TreeServer_var server = remote(*m_here);
    CallingSession::Pass kept;
    {
        CallingSession::Pass pass(first, addressOf(*m_here));
        kept = std::move(pass);
    }
    server->detach(0);
    kept = CallingSession::Pass();
    server->detach(0);
    QCOMPARE(m_server->take(), (Sessions{first, 0}));
}

void TestCallingSession::isNoneForACallWithinTheProcess()
{
    const ZelkoTreeLink::TreeServer_var server = m_server->_this();
    const CallingSession::Pass pass(first, "giop:tcp:127.0.0.1:" + std::to_string(m_orb->port()));
    server->detach(0);
    QCOMPARE(m_server->take(), Sessions{0});
}

QTEST_GUILESS_MAIN(TestCallingSession)
#include "tst_callingsession.moc"
