#include <zelkobase/orb/callingpeer.h>

#include <QtTest>

using namespace ZelkoCommon;

class TestCallingPeer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isNobodyOutsideOfACall();
    void tellsTheHostOfATransportAddress_data();
    void tellsTheHostOfATransportAddress();
};

void TestCallingPeer::isNobodyOutsideOfACall()
{
    QCOMPARE(callingPeer(), std::string());
    QCOMPARE(calledAddress(), std::string());
}

void TestCallingPeer::tellsTheHostOfATransportAddress_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("host");
    QTest::newRow("of IPv4") << "giop:tcp:127.0.0.1:4711"
                             << "127.0.0.1";
    QTest::newRow("of IPv6") << "giop:tcp:[fd00::2]:4711"
                             << "fd00::2";
    QTest::newRow("of IPv4 that comes as IPv6") << "giop:tcp:[::ffff:192.0.2.1]:4711"
                                                << "192.0.2.1";
    QTest::newRow("a name") << "giop:tcp:recorder:4711"
                            << "";
    QTest::newRow("nothing") << ""
                             << "";
    QTest::newRow("no port") << "giop:tcp:"
                             << "";
    QTest::newRow("no scheme") << "127.0.0.1:4711"
                               << "";
}

void TestCallingPeer::tellsTheHostOfATransportAddress()
{
    QFETCH(QString, address);
    QTEST(QString::fromStdString(hostOfTransportAddress(address.toStdString())), "host");
}

QTEST_APPLESS_MAIN(TestCallingPeer)
#include "tst_callingpeer.moc"
