#include "faultproxy.h"
#include "linkclient.h"
#include "orbbehindproxy.h"
#include "peerprocess.h"
#include "rawgiop.h"

#include <zelkobase/connection/ivtclient.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkobase/orb/orb.h>

#include <valuecore/valuetypes.h>

#include <QTcpSocket>
#include <QtTest>

using namespace ZelkoCommon;
using namespace std::chrono_literals;

namespace {

const QString device = QStringLiteral("/ZELKO/Device/R1");
constexpr int patience = 60000;

// The header of a message of 256 bytes.
const QByteArray halfMessage("GIOP\x01\x02\x01\0\0\x01\0\0", 12);

// Connections that say something and then no more.
class Strangers
{
public:
    // In turn from each of so many hosts: 127.0.0.1, 127.0.0.2 and so on.
    Strangers(quint16 port, int count, const QByteArray& bytes, int hosts)
    {
        for (int i = 0; i < count; ++i) {
            m_sockets.push_back(connectedFrom(QHostAddress(loopback + static_cast<quint32>(i % hosts)), port));
            m_sockets.back()->write(bytes);
            m_sockets.back()->flush();
        }
    }

    qsizetype connected() const
    {
        return std::count_if(m_sockets.begin(), m_sockets.end(), [](const std::unique_ptr<QTcpSocket>& socket) {
            return socket->state() == QAbstractSocket::ConnectedState;
        });
    }

private:
    static constexpr quint32 loopback = 0x7f000001;

    static std::unique_ptr<QTcpSocket> connectedFrom(const QHostAddress& host, quint16 port)
    {
        auto socket = std::make_unique<QTcpSocket>();
        socket->bind(host);
        socket->connectToHost(QHostAddress::LocalHost, port);
        if (!socket->waitForConnected()) {
            qFatal("a stranger was not let in: %s", qPrintable(socket->errorString()));
        }
        return socket;
    }

    std::vector<std::unique_ptr<QTcpSocket>> m_sockets;
};

// Cuts what connections there are until there was one; false when there is none for long.
bool cut(FaultProxy& proxy)
{
    const int before = proxy.cutConnections();
    return QTest::qWaitFor(
        [&] {
            proxy.cut();
            return proxy.cutConnections() > before;
        },
        patience);
}

int numberOf(const LinkClient& client)
{
    const auto* const number = client.find<Value<int>>(device + "/Number");
    return number ? number->GetValue() : -1;
}

} // namespace

/// Both directions go through a proxy: the client reaches the server through one, and names another as its own address,
/// so that the server's batches come through that one.
class TestLinkFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void bothDirectionsGoThroughTheProxies();
    void aSlowLineOnlyTakesLonger();
    void tinyPiecesAreAsGoodAsLargeOnes();
    void aCutIsMended_data();
    void aCutIsMended();
    void aFrozenLineIsGivenUpAndTakenUpAgain();
    void damageLeadsToAReconnectAndAnEqualTree_data();
    void damageLeadsToAReconnectAndAnEqualTree();
    void aConnectionWithoutCodeSetsIsNotTriedAgain();
    void aDamagedWriteIsNeverCarriedOut();
    void garbageFromAStrangerHarmsNobody();
    void bytesBehindTheArgumentsOfACallCostNoMemory();
    void strangersThatNeverEndAMessageKeepNobodyOut_data();
    void strangersThatNeverEndAMessageKeepNobodyOut();
    void closesWhatIsTooManyConnections();
    void closesWhatIsTooManyConnectionsOfOneHost();
    void theClientsOfOneHostLeaveRoomForOthers();

private:
    LinkOptions options() const
    {
        LinkOptions result = LinkClient::quickOptions();
        result.callTimeout = 1000ms;
        return result;
    }

    // A call that fails shows, as the next attempt comes too late to hide it.
    static LinkOptions patientOptions()
    {
        LinkOptions result = LinkClient::quickOptions();
        result.callTimeout = 5000ms;
        result.firstRetry = result.lastRetry = std::chrono::milliseconds(patience);
        return result;
    }

    FaultProxy m_toServer;
    FaultProxy m_toClient;
    std::unique_ptr<Orb> m_orb;
};

void TestLinkFaults::initTestCase()
{
    zelko::registerItemMapTypes();
    m_orb = std::make_unique<Orb>(optionsBehind(m_toClient));
    m_toClient.setTarget(m_orb->port());
}

void TestLinkFaults::cleanup()
{
    for (FaultProxy* const proxy : {&m_toServer, &m_toClient}) {
        proxy->setDelay(0);
        proxy->setPieces(0);
        proxy->setDamage(0);
        proxy->setFrozen(false);
        proxy->cut();
    }
}

void TestLinkFaults::bothDirectionsGoThroughTheProxies()
{
    PeerProcess server;
    server.ask("populate 2000");
    m_toServer.setTarget(server.port());
    const qint64 bytesBefore = m_toClient.bytes();
    LinkClient client(*m_orb, m_toServer.port(), options());
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QVERIFY2(m_toClient.bytes() - bytesBefore > 100000,
             qPrintable(QString::number(m_toClient.bytes() - bytesBefore))); // the batches
    const qint64 called = m_toServer.bytes();
    QTRY_VERIFY_WITH_TIMEOUT(m_toServer.bytes() > called, patience); // the heartbeats
}

void TestLinkFaults::aSlowLineOnlyTakesLonger()
{
    m_toServer.setDelay(50);
    m_toClient.setDelay(50);
    PeerProcess server;
    server.ask("populate 2000");
    m_toServer.setTarget(server.port());
    LinkClient client(*m_orb, m_toServer.port(), options());
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QCOMPARE(client.log, QStringList{"connected"});
}

void TestLinkFaults::tinyPiecesAreAsGoodAsLargeOnes()
{
    m_toServer.setPieces(3);
    m_toClient.setPieces(3);
    PeerProcess server;
    server.ask("populate 200");
    m_toServer.setTarget(server.port());
    LinkClient client(*m_orb, m_toServer.port(), options());
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QCOMPARE(client.log, QStringList{"connected"});
}

void TestLinkFaults::aCutIsMended_data()
{
    QTest::addColumn<bool>("toServer");
    QTest::addColumn<bool>("toClient");
    QTest::newRow("of the calls") << true << false;
    QTest::newRow("of the batches") << false << true;
    QTest::newRow("of both") << true << true;
}

void TestLinkFaults::aCutIsMended()
{
    QFETCH(bool, toServer);
    QFETCH(bool, toClient);
    PeerProcess server;
    server.ask("populate 1000");
    m_toServer.setTarget(server.port());
    LinkClient client(*m_orb, m_toServer.port(), options());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    server.ask("churn 5000");
    for (int i = 1; i <= 5; ++i) {
        if (toServer) {
            QVERIFY(cut(m_toServer));
        }
        if (toClient) {
            QVERIFY(cut(m_toClient));
        }
        server.ask(QStringLiteral("number %1").arg(i));
        QTRY_COMPARE_WITH_TIMEOUT(numberOf(client), i, patience);
    }
    server.ask("churn 0");
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("sessions"), "1", patience);
    for (int i = 0; i < client.log.size(); ++i) {
        QCOMPARE(client.log[i], i % 2 == 0 ? "connected" : "disconnected");
    }
}

void TestLinkFaults::aFrozenLineIsGivenUpAndTakenUpAgain()
{
    PeerProcess server;
    server.ask("populate 1000");
    m_toServer.setTarget(server.port());
    LinkClient client(*m_orb, m_toServer.port(), options());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    m_toServer.setFrozen(true);
    m_toClient.setFrozen(true);
    QTRY_COMPARE_WITH_TIMEOUT(client.log, (QStringList{"connected", "disconnected"}), patience);
    server.ask("number 5");
    m_toServer.setFrozen(false);
    m_toClient.setFrozen(false);
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
}

void TestLinkFaults::damageLeadsToAReconnectAndAnEqualTree_data()
{
    QTest::addColumn<int>("oneInBytes");
    QTest::addColumn<bool>("batches");
    QTest::newRow("of batches, now and then") << 100000 << true;
    QTest::newRow("of batches, in each") << 5000 << true;
    QTest::newRow("of calls, now and then") << 1000 << false;
    QTest::newRow("of calls, in each") << 100 << false;
}

void TestLinkFaults::damageLeadsToAReconnectAndAnEqualTree()
{
    QFETCH(int, oneInBytes);
    QFETCH(bool, batches);
    PeerProcess server;
    server.ask("populate 1000");
    m_toServer.setTarget(server.port());
    LinkClient client(*m_orb, m_toServer.port(), options());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    FaultProxy& damaging = batches ? m_toClient : m_toServer;
    const int damagedBefore = damaging.damaged();
    damaging.setDamage(oneInBytes);
    server.ask("churn 1000");
    QTRY_VERIFY_WITH_TIMEOUT(damaging.damaged() - damagedBefore >= 5, patience);
    damaging.setDamage(0);
    server.ask("churn 0");
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("sessions"), "1", patience);
}

// They are told once for a connection; without them the server answers every text on it with an error.
void TestLinkFaults::aConnectionWithoutCodeSetsIsNotTriedAgain()
{
    PeerProcess server;
    server.ask("populate 10");
    m_toServer.setTarget(server.port());
    m_toServer.setCodeSetsHidden(true);
    const int damagedBefore = m_toServer.damaged();
    LinkClient client(*m_orb, m_toServer.port(), options());
    QTRY_VERIFY_WITH_TIMEOUT(m_toServer.damaged() > damagedBefore, patience);
    m_toServer.setCodeSetsHidden(false);
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
}

void TestLinkFaults::aDamagedWriteIsNeverCarriedOut()
{
    PeerProcess server;
    m_toServer.setTarget(server.port());
    LinkClient client(*m_orb, m_toServer.port(), options());
    m_toServer.setDamage(400);
    for (int i = 0; i < 100; ++i) {
        QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
        auto* const text = client.find<Value<QString>>(device + "/Text");
        client.writer()->AddValue(text, 0);
        const QString written(20, QChar(u'a' + i % 2));
        const auto events = client.log.size();
        QString held;
        text->SetValue(written, nullptr);
        QTRY_VERIFY_WITH_TIMEOUT((held = server.ask("text")) == written || client.log.size() > events, patience);
        QVERIFY2(held.isEmpty() || held == QString(20, u'a') || held == QString(20, u'b'), qPrintable(held));
    }
    QVERIFY(m_toServer.damaged() > 0);
    m_toServer.setDamage(0);
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
}

void TestLinkFaults::garbageFromAStrangerHarmsNobody()
{
    PeerProcess server;
    m_toServer.setTarget(server.port());
    LinkClient client(*m_orb, m_toServer.port(), options());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    std::vector<std::unique_ptr<QTcpSocket>> strangers;
    for (const QByteArray& bytes : {QByteArray("GET / HTTP/1.1\r\n\r\n"), QByteArray("GIOP"),
                                    QByteArray("GIOP\x01\x02\x01\0\xff\xff\xff\x7f", 12),
                                    QByteArray("GIOP\x01\x02\x01\0\x10\0\0\0", 12), QByteArray(100000, '\xff')}) {
        for (const quint16 port : {server.port(), m_orb->port()}) {
            strangers.push_back(std::make_unique<QTcpSocket>());
            strangers.back()->connectToHost(QHostAddress::LocalHost, port);
            QVERIFY(strangers.back()->waitForConnected());
            strangers.back()->write(bytes);
            strangers.back()->flush();
        }
    }
    server.ask("number 5");
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QCOMPARE(client.log, QStringList{"connected"});
}

// An ORB that ends the connection for them loses what it had allocated for it.
void TestLinkFaults::bytesBehindTheArgumentsOfACallCostNoMemory()
{
    PeerProcess server;
    constexpr int calls = 1000;
    const auto callOften = [&] {
        int answered = 0;
        for (int i = 0; i < calls; ++i) {
            const giop::Reply reply =
                giop::call(server.port(), "ZelkoTreeLink", {"_non_existent", QByteArray(9000, 'x')});
            answered += reply.status == giop::NoException ? 1 : 0;
        }
        return answered;
    };
    QCOMPARE(callOften(), calls); // it has all that it needs for calls
    const qint64 before = residentBytes(server.pid());
    QCOMPARE(callOften(), calls);
    const qint64 grown = residentBytes(server.pid()) - before;
    QVERIFY2(grown < calls * 4096, qPrintable(QString::number(grown)));
}

// Each stranger holds a thread until its time is over. Where threads are fewer than strangers, a call waits for its
// turn.
void TestLinkFaults::strangersThatNeverEndAMessageKeepNobodyOut_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing at all") << QByteArray();
    QTest::newRow("half a header") << QByteArray("GIOP\x01\x02");
    QTest::newRow("a header only") << halfMessage;
    QTest::newRow("a header and the beginning of a request") << halfMessage + QByteArray("\0\0\0\x01\x03\0\0\0", 8);
}

void TestLinkFaults::strangersThatNeverEndAMessageKeepNobodyOut()
{
    QFETCH(QByteArray, bytes);
    PeerProcess server;
    m_toServer.setTarget(server.port());
    LinkClient before(*m_orb, m_toServer.port());
    QTRY_VERIFY_WITH_TIMEOUT(before.isConnected(), patience);
    const int count = 4 * OrbOptions().maxConnections;
    const int hosts = 4; // that of server and client is one of them
    const Strangers atServer(server.port(), count, bytes, hosts);
    const Strangers atClient(m_orb->port(), count, bytes, hosts);

    LinkClient client(*m_orb, m_toServer.port(), patientOptions());
    QSignalSpy failed(&client.connection, &ServerConnectionData::connectFailed);
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected() || !failed.isEmpty(), patience);
    QCOMPARE(failed, QList<QVariantList>());
    server.ask("number 5");
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QTRY_COMPARE_WITH_TIMEOUT(before.digest(), server.ask("digest"), patience);
    QCOMPARE(client.log, QStringList{"connected"});
    QCOMPARE(before.log, QStringList{"connected"});
}

// None of the hosts has as many as it may have.
void TestLinkFaults::closesWhatIsTooManyConnections()
{
    PeerProcess server;
    const int bound = OrbOptions().maxConnections;
    const int hosts = 4;
    const Strangers strangers(server.port(), bound + 50, {}, hosts);
    QVERIFY((bound + 50) / hosts + 1 < OrbOptions().maxConnectionsPerHost);
    QTRY_COMPARE_WITH_TIMEOUT(strangers.connected(), bound, patience);
    LinkClient client(*m_orb, server.port(), options());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(strangers.connected(), bound - 1, patience); // in whose place it came
}

void TestLinkFaults::closesWhatIsTooManyConnectionsOfOneHost()
{
    PeerProcess server;
    const int bound = OrbOptions().maxConnectionsPerHost;
    QVERIFY(bound < OrbOptions().maxConnections);
    const Strangers strangers(server.port(), bound + 50, {}, 1);
    QTRY_COMPARE_WITH_TIMEOUT(strangers.connected(), bound, patience);
    FaultProxy elsewhere(server.port());
    elsewhere.setHost(2);
    LinkClient other(*m_orb, elsewhere.port(), options());
    QTRY_VERIFY_WITH_TIMEOUT(other.isConnected(), patience);
    QCOMPARE(strangers.connected(), bound); // it takes nobody's place
    LinkClient client(*m_orb, server.port(), options());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(strangers.connected(), bound - 1, patience); // in whose place it came
}

void TestLinkFaults::theClientsOfOneHostLeaveRoomForOthers()
{
    const QString full = "the recorder server refused: it has as many clients as it takes";
    PeerProcess server({"--max-sessions-per-peer", "1"});
    LinkClient first(*m_orb, server.port(), options());
    QTRY_VERIFY_WITH_TIMEOUT(first.isConnected(), patience);
    LinkClient second(*m_orb, server.port(), options());
    QTRY_COMPARE_WITH_TIMEOUT(second.connection.lastError("north"), full, patience);
    FaultProxy elsewhere(server.port());
    elsewhere.setHost(2);
    LinkClient other(*m_orb, elsewhere.port(), options());
    QTRY_VERIFY_WITH_TIMEOUT(other.isConnected(), patience);
    QCOMPARE(second.connection.lastError("north"), full);
    QCOMPARE(server.ask("sessions"), "2");
}

QTEST_GUILESS_MAIN(TestLinkFaults)
#include "tst_linkfaults.moc"
