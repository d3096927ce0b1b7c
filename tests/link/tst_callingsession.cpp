#include "faultproxy.h"
#include "patience.h"

#include <zelkobase/orb/callingsession.h>
#include <zelkobase/orb/orb.h>
#include <zelkoidl/treelink.hh>

#include <omniORB4/omniInterceptors.h>
#include <omniORB4/omniORB.h>

#include <QtTest>

#include <algorithm>
#include <atomic>
#include <future>
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
    ZelkoTreeLink::UserRole roleOf(ZelkoTreeLink::SessionId) override
    {
        note();
        return ZelkoTreeLink::ROLE_VIEWER;
    }
    void write(ZelkoTreeLink::SessionId, const ZelkoTreeLink::Batch&, ZelkoTreeLink::Checksum) override
    {
        note();
        m_held.wait(true);
    }
    void detach(ZelkoTreeLink::SessionId) override { note(); }

    /// Calls of `write` stay inside until they are released.
    void hold() { m_held = true; }
    void release()
    {
        m_held = false;
        m_held.notify_all();
    }

    std::size_t count()
    {
        const std::lock_guard lock(m_mutex);
        return m_sessions.size();
    }
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
    std::atomic<bool> m_held = false;
};

using Sessions = std::vector<std::uint64_t>;

// The numbers use all of their bytes, and the first one of them has its highest bit set.
constexpr std::uint64_t first = 0xf123456789abcdef;
constexpr std::uint64_t second = 0x0fedcba987654321;

// What a client of another make says for a session, added to what ours says.
std::vector<QByteArray> foreignContexts;

CORBA::Boolean addForeignContexts(omni::omniInterceptors::clientSendRequest_T::info_T& request)
{
    for (const QByteArray& data : foreignContexts) {
        const CORBA::ULong index = request.service_contexts.length();
        request.service_contexts.length(index + 1);
        IOP::ServiceContext& context = request.service_contexts[index];
        context.context_id = CallingSession::contextId;
        context.context_data.length(static_cast<CORBA::ULong>(data.size()));
        std::copy(data.begin(), data.end(), context.context_data.get_buffer());
    }
    return true;
}

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
    void isNamedInACallBesideAnother();
    void isNamedWhereTheCallIsRefused();
    void isToldToItsOwnAddressOnly();
    void endsWithItsPass();
    void isTheLastOneMadeForAnAddress();
    void movesWithItsPass();
    void isNoneForACallWithinTheProcess();
    void isReadOfItsFormOnly_data();
    void isReadOfItsFormOnly();

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
    omniORB::getInterceptors()->clientSendRequest.add(addForeignContexts);
    m_server = new Server;
    m_orb->publish("server", m_server);
    m_here = std::make_unique<FaultProxy>(m_orb->port());
    m_elsewhere = std::make_unique<FaultProxy>(m_orb->port());
}

void TestCallingSession::cleanupTestCase()
{
    omniORB::getInterceptors()->clientSendRequest.remove(addForeignContexts);
    m_server->_remove_ref();
    m_orb.reset();
}

void TestCallingSession::cleanup()
{
    foreignContexts.clear();
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

// The second call gets a connection of its own, which is not there yet when the session is to be named.
void TestCallingSession::isNamedInACallBesideAnother()
{
    const ZelkoTreeLink::TreeServer_var server = remote(*m_here);
    const CallingSession::Pass pass(first, addressOf(*m_here));
    m_server->hold();
    auto held = std::async(std::launch::async, [&] { server->write(0, {}, 0); });
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count(), std::size_t{1}, patience);
    server->detach(0);
    m_server->release();
    held.get();
    QCOMPARE(m_server->take(), (Sessions{first, first}));
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

void TestCallingSession::isReadOfItsFormOnly_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<std::uint64_t>("session");
    const QByteArray number("\x12\x34\x56\x78\x9a\xbc\xde\xf0");
    QTest::newRow("its form") << QByteArray(8, '\0') + number << std::uint64_t{0x123456789abcdef0};
    QTest::newRow("whatever fills it up")
        << QByteArray(1, '\0') + "1234567" + number << std::uint64_t{0x123456789abcdef0};
    QTest::newRow("nothing") << QByteArray() << std::uint64_t{0};
    QTest::newRow("the byte order alone") << QByteArray(1, '\0') << std::uint64_t{0};
    QTest::newRow("another byte order") << '\1' + QByteArray(7, '\0') + number << std::uint64_t{0};
    QTest::newRow("a byte short") << QByteArray(8, '\0') + number.left(7) << std::uint64_t{0};
    QTest::newRow("a byte more") << QByteArray(8, '\0') + number + '\0' << std::uint64_t{0};
    QTest::newRow("very much") << QByteArray(100'000, '\0') << std::uint64_t{0};
}

void TestCallingSession::isReadOfItsFormOnly()
{
    QFETCH(const QByteArray, data);
    foreignContexts = {data};
    const ZelkoTreeLink::TreeServer_var server = remote(*m_here);
    server->detach(0);
    foreignContexts.clear();
    server->detach(0);
    const Sessions sessions = m_server->take();
    QCOMPARE(sessions.size(), std::size_t{2});
    QTEST(sessions[0], "session");
    QCOMPARE(sessions[1], 0U); // and is forgotten with its call
}

QTEST_GUILESS_MAIN(TestCallingSession)
#include "tst_callingsession.moc"
