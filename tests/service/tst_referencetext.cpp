#include <zelkobase/service/referencetext.h>

#include <QTest>

using namespace ZelkoCommon;

class tst_ReferenceText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostsAreFound_data();
    void hostsAreFound();
    void whatDoesNotSayItsHostsIsRefused_data();
    void whatDoesNotSayItsHostsIsRefused();
    void anAddressOfTheLongKindIsPutIntoBrackets();
};

void tst_ReferenceText::hostsAreFound_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("hosts");
    QTest::newRow("a name") << "corbaloc::1.2@recorder-north:8004/RecorderService" << QStringList("recorder-north");
    QTest::newRow("without version and port") << "corbaloc::h/x" << QStringList("h");
    QTest::newRow("with its protocol") << "corbaloc:iiop:1.2@h:1/x" << QStringList("h");
    QTest::newRow("over TLS") << "corbaloc:ssliop:1.2@h:1/x" << QStringList("h");
    QTest::newRow("without a key") << "corbaloc::h:1" << QStringList("h");
    QTest::newRow("two of them") << "corbaloc::a:1,:1.2@b:2/x,y@z" << QStringList{"a", "b"};
    QTest::newRow("an address of the long kind") << "corbaloc::1.2@[2001:db8::1]:1/x" << QStringList("2001:db8::1");
    QTest::newRow("a naming service") << "corbaname::192.0.2.1#south/recorder" << QStringList("192.0.2.1");
    QTest::newRow("a naming service with a key") << "corbaname::names:2809/NameService#r" << QStringList("names");
}

void tst_ReferenceText::hostsAreFound()
{
    QFETCH(const QString, text);
    QFETCH(const QStringList, hosts);
    const auto reference = ReferenceText::parse(text);
    QVERIFY(reference);
    QStringList found;
    for (const ReferenceText::Place& place : reference->places) {
        found << place.host;
    }
    QCOMPARE(found, hosts);
    QCOMPARE(reference->text(), text);
}

void tst_ReferenceText::whatDoesNotSayItsHostsIsRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << "";
    QTest::newRow("an IOR") << "IOR:00";
    QTest::newRow("what the ORB was told") << "corbaname:rir:#recorder";
    QTest::newRow("no host") << "corbaloc::1.2@/x";
    QTest::newRow("a second place without a host") << "corbaloc::a:1,/x";
    QTest::newRow("a protocol without hosts") << "corbaloc:uiop:1.2@sock/x";
    QTest::newRow("a port that is none") << "corbaloc::h:port/x";
    QTest::newRow("two hosts in one place") << "corbaloc::a@b:1/x";
    QTest::newRow("a bracket that does not end") << "corbaloc::[::1:1/x";
    QTest::newRow("no place") << "corbaloc:/x";
}

void tst_ReferenceText::whatDoesNotSayItsHostsIsRefused()
{
    QFETCH(const QString, text);
    QVERIFY(!ReferenceText::parse(text));
}

void tst_ReferenceText::anAddressOfTheLongKindIsPutIntoBrackets()
{
    auto reference = ReferenceText::parse("corbaloc::1.2@localhost:8004/RecorderService");
    QVERIFY(reference);
    reference->places.front().host = "::1";
    QCOMPARE(reference->text(), "corbaloc::1.2@[::1]:8004/RecorderService");
}

QTEST_GUILESS_MAIN(tst_ReferenceText)

#include "tst_referencetext.moc"
