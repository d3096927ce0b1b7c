#include <zelkobase/service/serviceaddress.h>

#include <QTest>

using namespace ZelkoCommon;

class tst_ServiceAddress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aReferenceNamesVersionAddressAndKey_data();
    void aReferenceNamesVersionAddressAndKey();
    void aReferenceThroughTlsNamesItsHost_data();
    void aReferenceThroughTlsNamesItsHost();
    void validity_data();
    void validity();
};

void tst_ServiceAddress::aReferenceNamesVersionAddressAndKey_data()
{
    QTest::addColumn<QStringList>("addresses");
    QTest::addColumn<QString>("reference");
    QTest::newRow("an address") << QStringList("192.0.2.7") << "corbaloc::1.2@192.0.2.7:8004/RecorderService";
    QTest::newRow("an address of the long kind")
        << QStringList("2001:db8::1") << "corbaloc::1.2@[2001:db8::1]:8004/RecorderService";
    QTest::newRow("two of them") << QStringList{"::1", "127.0.0.1"}
                                 << "corbaloc::1.2@[::1]:8004,:1.2@127.0.0.1:8004/RecorderService";
}

void tst_ServiceAddress::aReferenceNamesVersionAddressAndKey()
{
    QFETCH(QStringList, addresses);
    QTEST(serviceReference(addresses, 8004), "reference");
}

void tst_ServiceAddress::aReferenceThroughTlsNamesItsHost_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("reference");
    QTest::newRow("a name") << "recorder-north"
                            << "corbaloc:ssliop:1.2@recorder-north:8004/RecorderService";
    QTest::newRow("an address of the long kind") << "2001:db8::1"
                                                 << "corbaloc:ssliop:1.2@[2001:db8::1]:8004/RecorderService";
}

void tst_ServiceAddress::aReferenceThroughTlsNamesItsHost()
{
    QFETCH(QString, host);
    QTEST(tlsServiceReference(host, 8004), "reference");
}

void tst_ServiceAddress::validity_data()
{
    QTest::addColumn<ServiceAddress>("address");
    QTest::addColumn<bool>("isValid");
    QTest::newRow("nothing") << ServiceAddress() << false;
    QTest::newRow("host and port") << ServiceAddress{{}, "a", 1} << true;
    QTest::newRow("no port") << ServiceAddress{{}, "a", 0} << false;
    QTest::newRow("no host") << ServiceAddress{{}, {}, 1} << false;
    QTest::newRow("a reference alone") << ServiceAddress{"IOR:00", {}, 0} << true;
}

void tst_ServiceAddress::validity()
{
    QFETCH(ServiceAddress, address);
    QTEST(address.isValid(), "isValid");
}

QTEST_GUILESS_MAIN(tst_ServiceAddress)

#include "tst_serviceaddress.moc"
