#include "patience.h"
#include "rawgiop.h"

#include <zelkobase/orb/corbacall.h>
#include <zelkobase/orb/orb.h>

#include <zelkoidl/treelink.hh>

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

using namespace ZelkoCommon;
using namespace std::chrono_literals;

namespace {

constexpr std::size_t longText = 16 * 1024 * 1024; // more than a line holds

class Servant final : public POA_ZelkoTreeLink::TreeServer, public PortableServer::RefCountServantBase
{
public:
    ZelkoTreeLink::SessionId attach(CORBA::ULong version, const ZelkoTreeLink::Credentials&,
                                    ZelkoTreeLink::Subscriber_ptr) override
    {
        return version + 1000;
    }
    ZelkoTreeLink::UserRole roleOf(ZelkoTreeLink::SessionId) override
    {
        throw ZelkoTreeLink::Refused(ZelkoTreeLink::REFUSED_SESSION, std::string(longText, 'x').c_str());
    }
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

std::unique_ptr<QTcpSocket> connectTo(const Orb& orb, const char* from = "127.0.0.1")
{
    auto socket = std::make_unique<QTcpSocket>();
    if (!socket->bind(QHostAddress(QString::fromLatin1(from)))) {
        return nullptr;
    }
    socket->connectToHost(QHostAddress::LocalHost, orb.port());
    return socket->waitForConnected() ? std::move(socket) : nullptr;
}

QByteArray number(int value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

// Asks where an object is that is nowhere, in so many bytes behind the head.
QByteArray locateRequest(int bytes)
{
    return QByteArray("GIOP\x01\0\x01\x03", 8) + number(bytes) + number(1) + number(bytes - 8) +
           QByteArray(bytes - 8, 'n');
}

// False where the connection ends without an answer.
bool answers(QTcpSocket& socket, const QByteArray& request)
{
    socket.write(request);
    while (socket.bytesAvailable() < 20 && socket.waitForReadyRead()) {
    }
    return socket.readAll().startsWith("GIOP");
}

bool isAnswered(QTcpSocket& socket)
{
    return answers(socket, locateRequest(12));
}

// Asks "Test" for something large, and takes no more than its beginning.
bool beginsToBeAnswered(QTcpSocket& socket)
{
    socket.setReadBufferSize(1);
    socket.write(giop::requestMessage("Test", {"roleOf", QByteArray(8, '\0')}));
    return socket.waitForReadyRead(30'000);
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
    void hasRoomAgainWhenAConnectionEnds_data();
    void hasRoomAgainWhenAConnectionEnds();
    void putsANewConnectionInThePlaceOfTheEldestOfItsOwnHost();
    void keepsOneHostFromTakingEveryPlace();
    void keepsTheBoundOfAllWhereNoHostHasTooMany();
    void takesARequestUpToTheBound_data();
    void takesARequestUpToTheBound();
    void endsAConnectionThatDoesNotTakeItsAnswer();
    void endsThoughSomebodyDoesNotTakeHisAnswer();
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
    QTRY_VERIFY_WITH_TIMEOUT(!isConnected(silent), patience);
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
    QTRY_VERIFY_WITH_TIMEOUT(!isConnected(late), patience);
    QVERIFY(isAnswered(*first) && isAnswered(*second));
}

void TestOrb::hasRoomAgainWhenAConnectionEnds_data()
{
    QTest::addColumn<int OrbOptions::*>("bound");
    QTest::newRow("of all") << &OrbOptions::maxConnections;
    QTest::newRow("of its host") << &OrbOptions::maxConnectionsPerHost;
}

void TestOrb::hasRoomAgainWhenAConnectionEnds()
{
    QFETCH(int OrbOptions::*, bound);
    OrbOptions options;
    options.*bound = 1;
    const Orb orb(options);
    for (int i = 0; i < 20; ++i) {
        bool answered = false;
        QTRY_VERIFY_WITH_TIMEOUT(answered = answered || isAnswered(*connectTo(orb)), 30'000);
    }
}

void TestOrb::putsANewConnectionInThePlaceOfTheEldestOfItsOwnHost()
{
    OrbOptions options;
    options.maxConnectionsPerHost = 2;
    const Orb orb(options);
    const auto other = connectTo(orb, "127.0.0.2"); // the eldest of all
    const auto answered = connectTo(orb);
    QVERIFY(other && isAnswered(*answered));
    const auto silent = connectTo(orb);
    const auto late = connectTo(orb);
    QVERIFY(isAnswered(*late));
    QTRY_VERIFY_WITH_TIMEOUT(!isConnected(silent), 30'000);
    QVERIFY(isAnswered(*answered));
    QVERIFY(isAnswered(*other));
}

void TestOrb::keepsOneHostFromTakingEveryPlace()
{
    OrbOptions options;
    options.maxConnections = 4;
    options.maxConnectionsPerHost = 2;
    const Orb orb(options);
    const auto first = connectTo(orb);
    const auto second = connectTo(orb);
    QVERIFY(isAnswered(*first) && isAnswered(*second));
    const auto late = connectTo(orb);
    QTRY_VERIFY_WITH_TIMEOUT(!isConnected(late), 30'000);
    const auto other = connectTo(orb, "127.0.0.2");
    QVERIFY(other && isAnswered(*other));
    QVERIFY(isAnswered(*first) && isAnswered(*second));
}

void TestOrb::keepsTheBoundOfAllWhereNoHostHasTooMany()
{
    OrbOptions options;
    options.maxConnections = 2;
    options.maxConnectionsPerHost = 1;
    const Orb orb(options);
    const auto first = connectTo(orb);
    const auto second = connectTo(orb, "127.0.0.2");
    QVERIFY(second && isAnswered(*first) && isAnswered(*second));
    const auto third = connectTo(orb, "127.0.0.3");
    QVERIFY(third);
    QTRY_VERIFY_WITH_TIMEOUT(!isConnected(third), 30'000);
    QVERIFY(isAnswered(*first) && isAnswered(*second));
}

void TestOrb::takesARequestUpToTheBound_data()
{
    QTest::addColumn<QByteArrayList>("messages");
    QTest::addColumn<bool>("answers");
    QTest::newRow("as large as may be") << QByteArrayList{locateRequest(1000)} << true;
    QTest::newRow("one byte larger") << QByteArrayList{locateRequest(1001)} << false;
    QTest::newRow("several, each as large as may be") << QByteArrayList(3, locateRequest(1000)) << true;
}

// What is too large is not answered, but ended, by its head alone.
void TestOrb::takesARequestUpToTheBound()
{
    QFETCH(const QByteArrayList, messages);
    OrbOptions options;
    options.maxRequestBytes = 1000;
    const Orb orb(options);
    const auto socket = connectTo(orb);
    for (const QByteArray& message : messages) {
        QTEST(::answers(*socket, message), "answers");
    }
}

// The place of the only connection is free again, though what it asked for was never taken.
void TestOrb::endsAConnectionThatDoesNotTakeItsAnswer()
{
    OrbOptions options;
    options.maxConnections = 1;
    options.answerTimeout = 100ms;
    Orb orb(options);
    const PortableServer::ServantBase_var servant = new Servant;
    orb.publish("Test", servant);
    const auto stuck = connectTo(orb);
    QVERIFY(beginsToBeAnswered(*stuck));
    bool answered = false;
    QTRY_VERIFY_WITH_TIMEOUT(answered = answered || isAnswered(*connectTo(orb)), 30'000);
    stuck->setReadBufferSize(0);
    qint64 taken = stuck->readAll().size();
    while (stuck->waitForReadyRead(30'000)) {
        taken += stuck->readAll().size();
    }
    QVERIFY(!isConnected(stuck));
    QVERIFY2(taken < qint64{longText}, qPrintable(QString::number(taken)));
}

void TestOrb::endsThoughSomebodyDoesNotTakeHisAnswer()
{
    OrbOptions options;
    options.answerTimeout = std::chrono::hours(1);
    std::unique_ptr<QTcpSocket> stuck;
    {
        Orb orb(options);
        const PortableServer::ServantBase_var servant = new Servant;
        orb.publish("Test", servant);
        stuck = connectTo(orb);
        QVERIFY(beginsToBeAnswered(*stuck));
    }
    QVERIFY(isConnected(stuck)); // nobody has read on
}

QTEST_GUILESS_MAIN(TestOrb)
#include "tst_orb.moc"
