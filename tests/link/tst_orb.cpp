#include <zelkobase/orb/corbacall.h>
#include <zelkobase/orb/orb.h>

#include <zelkoidl/treelink.hh>

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

using namespace ZelkoCommon;
using namespace std::chrono_literals;

namespace {

class Servant final : public POA_ZelkoTreeLink::TreeServer, public PortableServer::RefCountServantBase
{
public:
    ZelkoTreeLink::SessionId attach(CORBA::ULong version, const ZelkoTreeLink::Credentials&,
                                    ZelkoTreeLink::Subscriber_ptr) override
    {
        return version + 1000;
    }
    ZelkoTreeLink::UserRole roleOf(ZelkoTreeLink::SessionId) override { return ZelkoTreeLink::ROLE_VIEWER; }
    void write(ZelkoTreeLink::SessionId, const ZelkoTreeLink::Batch&, ZelkoTreeLink::Checksum) override {}
    void detach(ZelkoTreeLink::SessionId) override {}
};

ZelkoTreeLink::SessionId callAttach(const Orb& orb, quint16 port)
{
    const CORBA::Object_var object = orb.remoteObject("127.0.0.1", port, "Test");
    const ZelkoTreeLink::TreeServer_var server = ZelkoTreeLink::TreeServer::_unchecked_narrow(object);
    setCallTimeout(server, 300ms);
    return server->attach(1, {}, ZelkoTreeLink::Subscriber::_nil());
}

// The name of the exception that a call ends with.
QString failureOf(const Orb& orb, quint16 port)
{
    try {
        callAttach(orb, port);
    } catch (const CORBA::Exception& exception) {
        return QString::fromLatin1(exception._name());
    }
    return QStringLiteral("none");
}

std::unique_ptr<QTcpSocket> connectTo(const Orb& orb)
{
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(QHostAddress::LocalHost, orb.port());
    return socket->waitForConnected() ? std::move(socket) : nullptr;
}

// Asks where an object is that is nowhere; false without an answer.
bool isAnswered(QTcpSocket& socket)
{
    socket.write(QByteArray("GIOP\x01\x00\x01\x03\x0c\0\0\0\x01\0\0\0\x04\0\0\0none", 24));
    while (socket.bytesAvailable() < 20 && socket.waitForReadyRead()) {
    }
    return socket.readAll().startsWith("GIOP");
}

bool isConnected(const std::unique_ptr<QTcpSocket>& socket)
{
    return socket->state() == QAbstractSocket::ConnectedState;
}

} // namespace

class TestOrb : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listensOnAPortThatTheSystemChose();
    void listensOnThePortThatItIsGiven();
    void refusesAPortThatIsTaken();
    void refusesAnAddressThatIsNotOurs();
    void refusesASecondOrb();
    void offersAnObjectUnderItsNameUntilItIsWithdrawn();
    void hasNoReferenceForHostsThatCannotBe_data();
    void hasNoReferenceForHostsThatCannotBe();
    void tellsThatNobodyIsThere();
    void givesUpOnAServerThatIsSilent();
    void putsANewConnectionInThePlaceOfTheEldestThatNeverHadAnAnswer();
    void keepsConnectionsThatItHasAnswered();
    void hasRoomAgainWhenAConnectionEnds();
};

void TestOrb::listensOnAPortThatTheSystemChose()
{
    const Orb orb({});
    QVERIFY(orb.port() != 0);
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", orb.port());
    QVERIFY(socket.waitForConnected());
}

void TestOrb::listensOnThePortThatItIsGiven()
{
    OrbOptions options;
    {
        QTcpServer probe;
        QVERIFY(probe.listen(QHostAddress::LocalHost));
        options.port = probe.serverPort();
    }
    const Orb orb(options);
    QCOMPARE(orb.port(), options.port);
}

void TestOrb::refusesAPortThatIsTaken()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost));
    OrbOptions options;
    options.port = other.serverPort();
    try {
        const Orb orb(options);
        QFAIL("it listens on a port that is taken");
    } catch (const OrbError& error) {
        QVERIFY2(QString::fromUtf8(error.what()).contains(QString::number(options.port)), error.what());
    }
    const Orb afterwards({}); // a failure leaves nothing behind
    QVERIFY(afterwards.port() != 0);
}

void TestOrb::refusesAnAddressThatIsNotOurs()
{
    OrbOptions options;
    options.listenAddress = "192.0.2.1";
    QVERIFY_EXCEPTION_THROWN(Orb{options}, OrbError);
}

void TestOrb::refusesASecondOrb()
{
    const Orb orb({});
    QVERIFY_EXCEPTION_THROWN(Orb{OrbOptions()}, OrbError);
    QVERIFY(!CORBA::is_nil(orb.orb()));
}

void TestOrb::offersAnObjectUnderItsNameUntilItIsWithdrawn()
{
    Orb orb({});
    auto* const servant = new Servant;
    const PortableServer::ServantBase_var guard(servant);
    QCOMPARE(failureOf(orb, orb.port()), "OBJECT_NOT_EXIST");
    orb.publish("Test", servant);
    QCOMPARE(callAttach(orb, orb.port()), ZelkoTreeLink::SessionId{1001});
    orb.withdraw("Test");
    QCOMPARE(failureOf(orb, orb.port()), "OBJECT_NOT_EXIST");
}

void TestOrb::hasNoReferenceForHostsThatCannotBe_data()
{
    QTest::addColumn<QString>("host");
    QTest::newRow("nothing") << "";
    QTest::newRow("two hosts") << "a,b:c";
    QTest::newRow("a bracket that is not closed") << "[::1";
}

void TestOrb::hasNoReferenceForHostsThatCannotBe()
{
    QFETCH(QString, host);
    const Orb orb({});
    const CORBA::Object_var object = orb.remoteObject(host, 1, "Test");
    QVERIFY(CORBA::is_nil(object));
}

void TestOrb::tellsThatNobodyIsThere()
{
    quint16 port = 0;
    {
        QTcpServer probe;
        QVERIFY(probe.listen(QHostAddress::LocalHost));
        port = probe.serverPort();
    }
    const Orb orb({});
    QCOMPARE(failureOf(orb, port), "TRANSIENT");
}

void TestOrb::givesUpOnAServerThatIsSilent()
{
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    const Orb orb({});
    QCOMPARE(failureOf(orb, silent.serverPort()), "TIMEOUT");
}

void TestOrb::putsANewConnectionInThePlaceOfTheEldestThatNeverHadAnAnswer()
{
    OrbOptions options;
    options.maxConnections = 2;
    const Orb orb(options);
    const auto answered = connectTo(orb);
    QVERIFY(isAnswered(*answered));
    const auto silent = connectTo(orb);
    const auto late = connectTo(orb);
    QVERIFY(isAnswered(*late));
    QTRY_VERIFY(!isConnected(silent));
    QVERIFY(isAnswered(*answered));
}

void TestOrb::keepsConnectionsThatItHasAnswered()
{
    OrbOptions options;
    options.maxConnections = 2;
    const Orb orb(options);
    const auto first = connectTo(orb);
    const auto second = connectTo(orb);
    QVERIFY(isAnswered(*first) && isAnswered(*second));
    const auto late = connectTo(orb);
    QTRY_VERIFY(!isConnected(late));
    QVERIFY(isAnswered(*first) && isAnswered(*second));
}

void TestOrb::hasRoomAgainWhenAConnectionEnds()
{
    OrbOptions options;
    options.maxConnections = 1;
    const Orb orb(options);
    for (int i = 0; i < 20; ++i) {
        bool answered = false;
        QTRY_VERIFY(answered = answered || isAnswered(*connectTo(orb)));
    }
}

QTEST_GUILESS_MAIN(TestOrb)
#include "tst_orb.moc"
