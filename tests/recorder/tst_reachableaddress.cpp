#include <recorder/process/reachableaddress.h>

#include <QTest>

#include <arpa/inet.h>

using namespace ZelkoRecorder;

class TestReachableAddress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsAnAddressOfItsOwn_data();
    void keepsAnAddressOfItsOwn();
    void findsOneForAllInterfaces_data();
    void findsOneForAllInterfaces();
};

void TestReachableAddress::keepsAnAddressOfItsOwn_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("loopback") << QStringLiteral("127.0.0.1");
    QTest::newRow("of a network") << QStringLiteral("192.0.2.7");
    QTest::newRow("a name") << QStringLiteral("recorder.example");
}

void TestReachableAddress::keepsAnAddressOfItsOwn()
{
    QFETCH(const QString, address);
    QCOMPARE(reachableAddress(address), address);
}

void TestReachableAddress::findsOneForAllInterfaces_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("none") << QString();
    QTest::newRow("any of the older kind") << QStringLiteral("0.0.0.0");
    QTest::newRow("any of the newer kind") << QStringLiteral("::");
}

void TestReachableAddress::findsOneForAllInterfaces()
{
    QFETCH(const QString, address);
    in_addr found{};
    QCOMPARE(inet_pton(AF_INET, qPrintable(reachableAddress(address)), &found), 1);
    QVERIFY(found.s_addr != INADDR_ANY);
}

QTEST_GUILESS_MAIN(TestReachableAddress)
#include "tst_reachableaddress.moc"
