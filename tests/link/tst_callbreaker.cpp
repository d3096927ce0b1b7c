#include <zelkobase/orb/callbreaker.h>
#include <zelkobase/orb/corbacall.h>
#include <zelkobase/orb/orb.h>

#include <zelkoidl/treelink.hh>

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include <future>
#include <memory>

using namespace ZelkoCommon;
using namespace std::chrono_literals;

namespace {

// The name of what a call ends with that is given an hour.
std::string endOfCall(const Orb& orb, quint16 port, CallBreaker* breaker)
{
    const CORBA::Object_var object = orb.remoteObject("127.0.0.1", port, "Test");
    const ZelkoTreeLink::TreeServer_var server = ZelkoTreeLink::TreeServer::_unchecked_narrow(object);
    setCallTimeout(server, 1h);
    try {
        const auto scope = breaker ? std::make_unique<CallBreaker::Scope>(*breaker) : nullptr;
        server->detach(1);
    } catch (const CORBA::Exception& exception) {
        return exception._name();
    }
    return "nothing";
}

// Takes calls and answers none.
class SilentPeer
{
public:
    SilentPeer() { m_server.listen(QHostAddress::LocalHost); }

    quint16 port() const { return m_server.serverPort(); }

    /// True when one more call has come.
    bool awaitCall()
    {
        m_last = m_server.waitForNewConnection(patience) ? m_server.nextPendingConnection() : nullptr;
        return m_last && m_last->waitForReadyRead(patience);
    }

    /// True when the last call ends.
    bool awaitEnd() { return m_last->waitForDisconnected(patience); }

private:
    static constexpr int patience = 30'000;

    QTcpServer m_server;
    QTcpSocket* m_last = nullptr;
};

} // namespace

class TestCallBreaker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsTheCallThatIsUnderWay();
    void endsALaterCallAsItBegins();
    void leavesOtherCallsAlone();
    void mayBreakWhenNothingIsCalled();
};

void TestCallBreaker::endsTheCallThatIsUnderWay()
{
    const Orb orb({});
    SilentPeer peer;
    CallBreaker breaker;
    auto end = std::async(std::launch::async, [&] { return endOfCall(orb, peer.port(), &breaker); });
    QVERIFY(peer.awaitCall());
    breaker.breakCalls();
    QCOMPARE(end.get(), std::string("COMM_FAILURE"));
    QVERIFY(peer.awaitEnd());
}

void TestCallBreaker::endsALaterCallAsItBegins()
{
    const Orb orb({});
    SilentPeer peer;
    CallBreaker breaker;
    breaker.breakCalls();
    QCOMPARE(endOfCall(orb, peer.port(), &breaker), std::string("NO_RESPONSE"));
}

void TestCallBreaker::leavesOtherCallsAlone()
{
    const Orb orb({});
    SilentPeer peer;
    CallBreaker breaker;
    CallBreaker other;
    auto end = std::async(std::launch::async, [&] { return endOfCall(orb, peer.port(), &other); });
    QVERIFY(peer.awaitCall());
    breaker.breakCalls();
    QCOMPARE(end.wait_for(200ms), std::future_status::timeout);
    other.breakCalls();
    QCOMPARE(end.get(), std::string("COMM_FAILURE"));
}

void TestCallBreaker::mayBreakWhenNothingIsCalled()
{
    CallBreaker breaker;
    {
        const CallBreaker::Scope scope(breaker);
    }
    breaker.breakCalls();
    breaker.breakCalls();
}

QTEST_GUILESS_MAIN(TestCallBreaker)
#include "tst_callbreaker.moc"
