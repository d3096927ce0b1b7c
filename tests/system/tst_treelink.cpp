#include "linkclient.h"
#include "peerprocess.h"
#include "watch.h"

#include <zelkobase/connection/ivtclient.h>
#include <zelkobase/connection/treelink.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkobase/orb/corbacall.h>
#include <zelkoidl/treelink.hh>

#include <omniORB4/omniORB.h>

#include <valuecore/valuetypes.h>

#include <QDeadlineTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QtTest>

#include <sys/socket.h>
#include <thread>

using namespace ZelkoCommon;
using namespace std::chrono_literals;
using zelko::recordmap::RecordItemMap;

namespace {

const QString device = QStringLiteral("/ZELKO/Device/R1");
const QString map = device + QStringLiteral("/Records/Map");
constexpr int patience = 30000;

// Whether a server with no room for a further client has some before `patience` is over.
bool hasRoomSoon(const Orb& orb, quint16 port)
{
    const CORBA::Object_var object = orb.remoteObject("127.0.0.1", port, ZelkoTreeLink::OBJECT_KEY);
    const auto server = ZelkoTreeLink::TreeServer_var(ZelkoTreeLink::TreeServer::_unchecked_narrow(object));
    const CORBA::Object_var nobody = orb.rootPoa()->create_reference("IDL:ZelkoTreeLink/Subscriber:1.0");
    const auto client = ZelkoTreeLink::Subscriber_var(ZelkoTreeLink::Subscriber::_unchecked_narrow(nobody));
    for (QDeadlineTimer deadline(patience); !deadline.hasExpired(); std::this_thread::yield()) {
        try {
            server->attach(ZelkoTreeLink::PROTOCOL_VERSION, {"", ""}, client);
            return true;
        } catch (const CORBA::Exception&) { // not yet
        }
    }
    return false;
}

} // namespace

class TestTreeLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zelko::registerItemMapTypes(); }

    void loadsAServersTree();
    void followsEachChange();
    void tellsThePlainValuesBeforeItIsConnectedAndTheMapBeforeItIsComplete();
    void tellsNodesOfDevices();
    void waitsForAServerThatIsNotThereYet();
    void comesBackByItselfAfterTheServerWasKilled();
    void destroysWhatALostConnectionHeld();
    void givesUpAServerThatHangs();
    void theServerForgetsAClientThatLeaves();
    void theServerTakesNoMoreClientsThanItMay();
    void theServerDropsASilentClient();
    void theServerRefusesAnotherVersion();
    void everyOneOfSeveralClientsEndsEqual();
    void theServerOutlivesAClientThatIsKilled();
    void aStoppedClientEndsEqualAndTheServerStaysBounded();
    void aBlockedGuiEndsEqualAndTheServerStaysBounded();
    void changesWaitWhileAnObserverRunsAnEventLoop();
    void anEndInTheMiddleOfTheFirstLoadIsClean();
    void aLinkThatIsStoppedLeavesAndTellsNothingMore();
    void doesNotWaitForOneServerBeforeItLeavesTheNext_data();
    void doesNotWaitForOneServerBeforeItLeavesTheNext();
    void saysWhereItsValuesStand();

private:
    Orb m_orb{{}};
};

void TestTreeLink::loadsAServersTree()
{
    PeerProcess server;
    QVERIFY(server.port() != 0);
    QCOMPARE(server.ask("populate 10000"), "ok");
    LinkClient client(m_orb, server.port());
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QCOMPARE(client.log, QStringList{"connected"});
    QVERIFY(client.isConnected());
    QCOMPARE(client.find<RecordItemMap>(map)->Size(), 10000u);
}

void TestTreeLink::followsEachChange()
{
    PeerProcess server;
    LinkClient client(m_orb, server.port());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    for (const char* const step :
         {"set A 1", "set A 2", "set B 1", "erase A", "insert New", "number 5", "remove New", "clear"}) {
        QCOMPARE(server.ask(step), "ok");
        QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    }
    QCOMPARE(client.log, QStringList{"connected"});
    QCOMPARE(server.ask("restarts"), "0");
}

void TestTreeLink::tellsThePlainValuesBeforeItIsConnectedAndTheMapBeforeItIsComplete()
{
    PeerProcess server;
    server.ask("populate 5000");
    LinkClient client(m_orb, server.port());
    QList<quint64> sizeAtConnect;
    QList<int> countAtConnect;
    QList<quint64> sizeAtComplete;
    Watch complete([&] { sizeAtComplete << client.find<RecordItemMap>(map)->Size(); });
    connect(&client.connection, &AbstractServerConnectionData::si_allTicsConnected, this, [&] {
        sizeAtConnect << client.find<RecordItemMap>(map)->Size();
        countAtConnect << client.find<Value<int>>(device + "/Records/LoadCount")->GetValue();
        complete.on(client.find<Value<bool>>(device + "/Records/LoadedCompletly"));
    });
    QTRY_COMPARE_WITH_TIMEOUT(sizeAtComplete, QList<quint64>{5000}, patience);
    QCOMPARE(countAtConnect, QList<int>{5000});
    QVERIFY(sizeAtConnect.size() == 1 && sizeAtConnect.first() < 5000);
}

void TestTreeLink::tellsNodesOfDevices()
{
    PeerProcess server;
    LinkClient client(m_orb, server.port());
    QSignalSpy added(&client.connection, &AbstractServerConnectionData::si_deviceNodeAdded);
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    QCOMPARE(added.size(), 1);
    QCOMPARE(added.first().first().toString(), client.root + device);
}

void TestTreeLink::waitsForAServerThatIsNotThereYet()
{
    quint16 port = 0;
    {
        PeerProcess first;
        port = first.port();
    }
    LinkClient client(m_orb, port);
    QSignalSpy failed(&client.connection, &ServerConnectionData::connectFailed);
    QTRY_VERIFY_WITH_TIMEOUT(failed.size() >= 2, patience);
    QCOMPARE(client.connection.lastError("north"), "nobody answers there, or not in time (TRANSIENT)");
    QCOMPARE(client.log, QStringList());
    PeerProcess server({}, port);
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    QCOMPARE(client.connection.lastError("north"), QString());
}

void TestTreeLink::comesBackByItselfAfterTheServerWasKilled()
{
    PeerProcess first;
    first.ask("populate 1000");
    LinkClient client(m_orb, first.port());
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), first.ask("digest"), patience);
    QStringList changesAfterTheEnd;
    Watch afterTheEnd([&] { changesAfterTheEnd << client.log.join(','); });
    afterTheEnd.on(client.find<Value<int>>(device + "/Number"));
    first.kill();
    QTRY_COMPARE_WITH_TIMEOUT(client.log, (QStringList{"connected", "disconnected"}), patience);
    QVERIFY(!client.isConnected());
    QVERIFY(!client.writer());
    QVERIFY(!client.connection.lastError("north").isEmpty());
    QCOMPARE(changesAfterTheEnd, QStringList{"connected"}); // the notice of its deletion

    PeerProcess second({}, first.port());
    second.ask("populate 500");
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), second.ask("digest"), patience);
    QCOMPARE(client.log, (QStringList{"connected", "disconnected", "connected"}));
}

void TestTreeLink::destroysWhatALostConnectionHeld()
{
    PeerProcess server;
    server.ask("populate 20000");
    LinkClient client(m_orb, server.port());
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    std::vector<std::weak_ptr<ZELKO_XML::ZELKO_RecordData>> records;
    for (const auto& entry : client.find<RecordItemMap>(map)->data()) {
        records.push_back(entry.second.GetRecordData());
    }
    server.kill();
    QTRY_COMPARE_WITH_TIMEOUT(client.log, (QStringList{"connected", "disconnected"}), patience);
    QTRY_VERIFY_WITH_TIMEOUT(
        std::all_of(records.begin(), records.end(), [](const auto& record) { return record.expired(); }), patience);
}

void TestTreeLink::givesUpAServerThatHangs()
{
    PeerProcess server;
    LinkOptions options = LinkClient::quickOptions();
    options.callTimeout = 500ms;
    LinkClient client(m_orb, server.port(), options);
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    server.stop();
    QTRY_COMPARE_WITH_TIMEOUT(client.log, (QStringList{"connected", "disconnected"}), patience);
    server.continueIt();
    QTRY_COMPARE_WITH_TIMEOUT(client.log, (QStringList{"connected", "disconnected", "connected"}), patience);
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
}

void TestTreeLink::theServerForgetsAClientThatLeaves()
{
    PeerProcess server;
    {
        LinkClient client(m_orb, server.port());
        QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(server.ask("sessions"), "1", patience);
    }
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("sessions"), "0", patience);
}

void TestTreeLink::theServerTakesNoMoreClientsThanItMay()
{
    PeerProcess server({"--max-sessions", "1"});
    auto first = std::make_unique<LinkClient>(m_orb, server.port());
    QTRY_VERIFY_WITH_TIMEOUT(first->isConnected(), patience);
    LinkClient second(m_orb, server.port());
    QTRY_COMPARE_WITH_TIMEOUT(second.connection.lastError("north"),
                              "the recorder server refused: it has as many clients as it takes", patience);
    QVERIFY(first->isConnected());
    first.reset();
    QTRY_VERIFY_WITH_TIMEOUT(second.isConnected(), patience);
}

void TestTreeLink::theServerDropsASilentClient()
{
    PeerProcess server({"--max-silence", "300"});
    LinkOptions options = LinkClient::quickOptions();
    options.heartbeat = 5000ms;
    LinkClient client(m_orb, server.port(), options);
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("sessions"), "0", patience);
    QTRY_COMPARE_WITH_TIMEOUT(client.log, (QStringList{"connected", "disconnected", "connected"}), patience);
}

void TestTreeLink::theServerRefusesAnotherVersion()
{
    PeerProcess server;
    const CORBA::Object_var object = m_orb.remoteObject("127.0.0.1", server.port(), ZelkoTreeLink::OBJECT_KEY);
    const auto remote = ZelkoTreeLink::TreeServer_var(ZelkoTreeLink::TreeServer::_unchecked_narrow(object));
    try {
        remote->attach(ZelkoTreeLink::PROTOCOL_VERSION + 1, {"", ""}, ZelkoTreeLink::Subscriber::_nil());
        QFAIL("another version was taken");
    } catch (const ZelkoTreeLink::Refused& refused) {
        QCOMPARE(refused.reason, ZelkoTreeLink::REFUSED_VERSION);
    }
}

void TestTreeLink::everyOneOfSeveralClientsEndsEqual()
{
    PeerProcess server;
    server.ask("populate 1000");
    std::vector<std::unique_ptr<LinkClient>> clients;
    server.ask("churn 2000");
    for (int i = 0; i < 5; ++i) {
        clients.push_back(std::make_unique<LinkClient>(m_orb, server.port()));
        QTRY_VERIFY_WITH_TIMEOUT(clients.back()->isConnected(), patience);
    }
    clients.erase(clients.begin());
    server.ask("churn 0");
    for (const auto& client : clients) {
        QTRY_COMPARE_WITH_TIMEOUT(client->digest(), server.ask("digest"), patience);
        QCOMPARE(client->log, QStringList{"connected"});
    }
}

void TestTreeLink::theServerOutlivesAClientThatIsKilled()
{
    PeerProcess server;
    server.ask("populate 1000");
    LinkClient other(m_orb, server.port());
    const auto client = PeerProcess::client(server.port());
    QTRY_COMPARE_WITH_TIMEOUT(client->ask("log"), "connected", patience);
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("sessions"), "2", patience);
    server.ask("churn 5000");
    client->kill();
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("sessions"), "1", patience);
    server.ask("churn 0");
    QTRY_COMPARE_WITH_TIMEOUT(other.digest(), server.ask("digest"), patience);
    QCOMPARE(other.log, QStringList{"connected"});
}

void TestTreeLink::aStoppedClientEndsEqualAndTheServerStaysBounded()
{
    PeerProcess server({"--backlog", "2000000"});
    server.ask("populate 10000");
    const auto client = PeerProcess::client(server.port());
    QTRY_COMPARE_WITH_TIMEOUT(client->ask("digest"), server.ask("digest"), patience);
    server.ask("churn 10000");
    QTRY_VERIFY_WITH_TIMEOUT(client->ask("digest") != QString(), patience);
    const qint64 before = residentBytes(server.pid());
    client->stop();
    qint64 most = 0;
    for (int changes = 1000; changes <= 100000; changes += 1000) { // of about 100 bytes each
        QCOMPARE(server.ask(QStringLiteral("await %1").arg(changes)), "ok");
        most = std::max(most, residentBytes(server.pid()));
        QVERIFY(server.ask("backlog").toInt() <= 2300000);
    }
    client->continueIt();
    qInfo("the server grew by %.1f MB in the meantime", double(most - before) / 1e6);
    QVERIFY(most - before < 32 * 1024 * 1024);
    server.ask("churn 0");
    QTRY_COMPARE_WITH_TIMEOUT(client->ask("digest"), server.ask("digest"), patience);
    QVERIFY(server.ask("restarts").toInt() >= 1);
}

// The thread of the tree does nothing for a while, as a process does that is stopped.
void TestTreeLink::aBlockedGuiEndsEqualAndTheServerStaysBounded()
{
    PeerProcess server({"--backlog", "1000000"});
    server.ask("populate 1000");
    LinkOptions options = LinkClient::quickOptions();
    options.maxPendingBytes = 1000000;
    LinkClient client(m_orb, server.port(), options);
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    const qint64 before = residentBytes(server.pid());
    server.ask("churn 10000");
    for (int changes = 1000; changes <= 40000; changes += 1000) {
        QCOMPARE(server.ask(QStringLiteral("await %1").arg(changes)), "ok");
        QVERIFY(server.ask("backlog").toInt() <= 1300000);
    }
    const qint64 grown = residentBytes(server.pid()) - before;
    QVERIFY2(grown < 32 * 1024 * 1024, qPrintable(QString::number(grown)));
    QVERIFY(server.ask("restarts").toInt() >= 1);
    server.ask("churn 0");
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QCOMPARE(client.log, QStringList{"connected"});
}

void TestTreeLink::changesWaitWhileAnObserverRunsAnEventLoop()
{
    PeerProcess server;
    LinkClient client(m_orb, server.port());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    LinkClient other(m_orb, server.port());
    QTRY_VERIFY_WITH_TIMEOUT(other.isConnected(), patience);
    auto* const number = client.find<Value<int>>(device + "/Number");
    const auto* const numberOfOther = other.find<Value<int>>(device + "/Number");
    QList<int> seen;
    Watch window([&] {
        seen << number->GetValue();
        if (seen.size() == 1) {
            server.ask("number 2");
            server.ask("number 3");
            QTRY_COMPARE_WITH_TIMEOUT(numberOfOther->GetValue(), 3, patience); // in the event loop of the observer
            seen << number->GetValue();
        }
    });
    window.on(number);
    server.ask("number 1");
    QTRY_COMPARE_WITH_TIMEOUT(seen, (QList<int>{1, 1, 2, 3}), patience);
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
}

void TestTreeLink::anEndInTheMiddleOfTheFirstLoadIsClean()
{
    PeerProcess server;
    server.ask("populate 20000");
    for (int i = 0; i < 5; ++i) {
        LinkClient client(m_orb, server.port());
        const auto records = quint64(100 + 4000 * i);
        QTRY_VERIFY_WITH_TIMEOUT(client.find<RecordItemMap>(map) && client.find<RecordItemMap>(map)->Size() > records,
                                 patience);
    }
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("sessions"), "0", patience);
}

void TestTreeLink::aLinkThatIsStoppedLeavesAndTellsNothingMore()
{
    PeerProcess server;
    Tree tree;
    TreeLink link(m_orb, &tree, {"north", "127.0.0.1", server.port()}, LinkClient::quickOptions());
    QTRY_VERIFY_WITH_TIMEOUT(link.isConnected(), patience);
    QSignalSpy disconnected(&link, &TreeLink::disconnected);
    const QStringList items = treeList(tree);
    link.stop();
    server.ask("number 5");
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("sessions"), "0", patience);
    QCOMPARE(treeList(tree), items);
    QCOMPARE(disconnected.size(), 0);
}

void TestTreeLink::doesNotWaitForOneServerBeforeItLeavesTheNext_data()
{
    QTest::addColumn<bool>("firstIsSilent");
    QTest::newRow("the first one is silent") << true;
    QTest::newRow("the second one is silent") << false;
}

// The call to the silent server goes on until somebody sees that the other server was left.
void TestTreeLink::doesNotWaitForOneServerBeforeItLeavesTheNext()
{
    QFETCH(bool, firstIsSilent);
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    PeerProcess other({"--max-sessions", "1"});
    auto site = LinkClient::site(firstIsSilent ? silent.serverPort() : other.port());
    site->AddSubSystem({"south", "127.0.0.1", firstIsSilent ? other.port() : silent.serverPort()});
    LinkOptions options = LinkClient::quickOptions();
    options.callTimeout = 120s;
    omniORB::setClientConnectTimeout(120000);
    const auto restore = qScopeGuard(
        [] { omniORB::setClientConnectTimeout(static_cast<CORBA::ULong>(OrbOptions().connectTimeout.count())); });
    Tree tree;
    auto data = std::make_unique<ServerConnectionData>(m_orb, &tree, site, options);
    QTRY_VERIFY_WITH_TIMEOUT(data->isConnected(firstIsSilent ? "south" : "north"), patience);
    QTRY_VERIFY_WITH_TIMEOUT(silent.hasPendingConnections(), patience);
    const QTcpSocket* const call = silent.nextPendingConnection();
    QTRY_VERIFY_WITH_TIMEOUT(call->bytesAvailable() > 0, patience);
    bool leftMeanwhile = false;
    std::thread watcher([&, descriptor = int(call->socketDescriptor())] {
        leftMeanwhile = hasRoomSoon(m_orb, other.port());
        ::shutdown(descriptor, SHUT_RDWR);
    });
    data.reset();
    watcher.join();
    QVERIFY(leftMeanwhile);
}

void TestTreeLink::saysWhereItsValuesStand()
{
    auto site = LinkClient::site(1);
    site->AddSubSystem({"south", "recorder-south", 7});
    const auto type = ConnectionType::Client;
    Tree tree;
    ServerConnectionData data(m_orb, &tree, site);
    QCOMPARE(data.getClientBasePath("south", type), "/SubSystems/south/ZELKO/Device");
    QCOMPARE(data.GetDeviceBasePath("R1"), "/SubSystems/north/ZELKO/Device/R1");
    QCOMPARE(data.GetBasePath("R1"), "/SubSystems/north/ZELKO/Command/R1/");
    QCOMPARE(data.getConnData("north", type), (VtConnectData{"127.0.0.1", "127.0.0.1", 1}));
    QCOMPARE(data.getConnData("south", type), (VtConnectData{"recorder-south", "", 7}));
    QCOMPARE(data.getConnData("east", type), VtConnectData());
    VtConnectData found{"kept", "kept", 3};
    QVERIFY(!data.GetIPConnectionInformation("east", found));
    QCOMPARE(found.host, "kept");
    QVERIFY(data.GetIPConnectionInformation("", found));
    QCOMPARE(found.host, "127.0.0.1");
    QVERIFY(!data.isConnected("north"));
    QVERIFY(!data.getVtClient("north", type));
    QVERIFY(!data.getVtClient("east", type));
    QCOMPARE(data.GetConfiguration(), site);
}

QTEST_GUILESS_MAIN(TestTreeLink)
#include "tst_treelink.moc"
