#include <zelkobase/orb/hostaddress.h>

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <netdb.h>
#include <sys/socket.h>

using namespace ZelkoCommon;

class TestHostAddress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasOneFormForAnAddress_data();
    void hasOneFormForAnAddress();
    void isThatOfAPeerToo();
    void isWhatASocketTakes_data();
    void isWhatASocketTakes();
};

void TestHostAddress::hasOneFormForAnAddress_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("address");
    QTest::newRow("IPv4") << "192.0.2.1"
                          << "192.0.2.1";
    QTest::newRow("IPv6") << "::1"
                          << "::1";
    QTest::newRow("IPv6 in brackets") << "[fd00::2]"
                                      << "fd00::2";
    QTest::newRow("IPv6 at length") << "FD00:0:0:0:0:0:0:2"
                                    << "fd00::2";
    QTest::newRow("IPv4 mapped into IPv6") << "[::ffff:192.0.2.1]"
                                           << "192.0.2.1";
    for (const char* const none : {"", "localhost", "[]", "[fd00::2", "192.0.2.1:80", "192.0.2.256", "1 2"}) {
        QTest::newRow(qPrintable(QStringLiteral("none: \"%1\"").arg(none))) << none << "";
    }
}

void TestHostAddress::hasOneFormForAnAddress()
{
    QFETCH(QString, text);
    QTEST(QString::fromStdString(plainAddress(text.toStdString())), "address");
}

// A server of both families sees a client of the older one under a mapped address.
void TestHostAddress::isThatOfAPeerToo()
{
    QTcpServer server;
    if (!server.listen(QHostAddress::Any)) {
        QFAIL(qPrintable(server.errorString()));
    }
    QTcpSocket client;
    client.connectToHost(QHostAddress::LocalHost, server.serverPort());
    QVERIFY(client.waitForConnected(30000));
    QVERIFY(server.waitForNewConnection(30000));
    const std::unique_ptr<QTcpSocket> peer(server.nextPendingConnection());
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    QCOMPARE(::getpeername(static_cast<int>(peer->socketDescriptor()), generic, &length), 0);
    QCOMPARE(plainAddress(generic, length), std::string(loopbackAddress));
}

void TestHostAddress::isWhatASocketTakes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("family");
    QTest::newRow("IPv4") << "192.0.2.1" << AF_INET;
    QTest::newRow("IPv6") << "fd00::2" << AF_INET6;
    for (const char* const none : {"", "localhost", "[fd00::2]", "192.0.2.1:80", "192.0.2.256"}) {
        QTest::newRow(qPrintable(QStringLiteral("none: \"%1\"").arg(none))) << none << int(AF_UNSPEC);
    }
}

void TestHostAddress::isWhatASocketTakes()
{
    QFETCH(QString, text);
    QFETCH(int, family);
    const SocketAddress address = datagramAddress(text.toStdString(), 4711);
    QCOMPARE(address ? address->ai_family : AF_UNSPEC, family);
    if (address) {
        QCOMPARE(address->ai_socktype, int(SOCK_DGRAM));
        QCOMPARE(plainAddress(address->ai_addr, address->ai_addrlen), text.toStdString());
        char port[NI_MAXSERV] = "";
        QCOMPARE(::getnameinfo(address->ai_addr, address->ai_addrlen, nullptr, 0, port, sizeof port, NI_NUMERICSERV),
                 0);
        QCOMPARE(port, "4711");
    }
}

QTEST_GUILESS_MAIN(TestHostAddress)
#include "tst_hostaddress.moc"
