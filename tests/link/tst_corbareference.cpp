#include <zelkobase/orb/corbacall.h>
#include <zelkobase/orb/orb.h>

#include "adminservant.h"
#include "namingservice.h"

#include <QtTest>

using namespace ZelkoCommon;

namespace {

const QString record = QStringLiteral("Größe \U0001F4E1");

// An ORB with an administration interface and a naming service that knows it.
struct Peer
{
    Peer()
    {
        orb.publish("Admin", admin);
        plain = orb.orb()->string_to_object(toCorba(corbaloc("127.1:%1")));
        auto* const names = new ZelkoTest::NamingService;
        names->name("recorder", plain);
        namesGuard = names;
        orb.publish("Names", names);
    }

    QString corbaloc(const QString& addresses) const { return "corbaloc::" + addresses.arg(orb.port()) + "/Admin"; }

    QString ior() const
    {
        const CORBA::String_var text = orb.orb()->object_to_string(plain);
        return text.in();
    }

    QStringList callsAfter(CORBA::Object_ptr object)
    {
        const auto reference = QD_ZLK::IF_ZELKO_Admin::_unchecked_narrow(object);
        const QD_ZLK::IF_ZELKO_Admin_var guard(reference);
        reference->setRecordComment("device", toCorba(record), toWideCorba(record));
        return log.calls();
    }

    CallLog log;
    Orb orb{{}};
    AdminServant* const admin = new AdminServant(log);
    const PortableServer::ServantBase_var adminGuard{admin};
    CORBA::Object_var plain; // as the ORB makes it
    PortableServer::ServantBase_var namesGuard;
};

} // namespace

class TestCorbaReference : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isWhatTheOrbAloneDoesNotTake();
    void takesWideTextsAtOnce_data();
    void takesWideTextsAtOnce();
    void takesWideTextsOfARemoteObject();
    void leavesAReferenceThatNamesItsCodeSetsAsItIs();
    void tellsOfATextThatIsNoReference_data();
    void tellsOfATextThatIsNoReference();
    void tellsThatNobodyHasAName();
    void isNilForTheReferenceOfNothing();
    void isUsableForAnObjectOfThisProcess();
};

void TestCorbaReference::isWhatTheOrbAloneDoesNotTake()
{
    const Peer peer;
    const QD_ZLK::IF_ZELKO_Admin_var plain = QD_ZLK::IF_ZELKO_Admin::_unchecked_narrow(peer.plain);
    QVERIFY_EXCEPTION_THROWN(plain->setRecordComment("device", "record", toWideCorba(record)), CORBA::INV_OBJREF);
}

void TestCorbaReference::takesWideTextsAtOnce_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("corbaloc without a version") << "corbaloc::127.1:%1/Admin";
    QTest::newRow("corbaloc of the oldest version") << "corbaloc::1.0@127.1:%1/Admin";
    QTest::newRow("corbaloc of the version between") << "corbaloc::1.1@127.1:%1/Admin";
    QTest::newRow("corbaloc of the right version") << "corbaloc::1.2@127.1:%1/Admin";
    QTest::newRow("corbaloc with its protocol") << "corbaloc:iiop:127.1:%1/Admin";
    QTest::newRow("corbaloc whose first address is dead") << "corbaloc::127.1:1,:127.1:%1/Admin";
    QTest::newRow("corbaname") << "corbaname::127.1:%1/Names#recorder";
    QTest::newRow("IOR") << "IOR";
}

void TestCorbaReference::takesWideTextsAtOnce()
{
    QFETCH(QString, text);
    Peer peer;
    const CORBA::Object_var object = peer.orb.reference(text == "IOR" ? peer.ior() : text.arg(peer.orb.port()));
    QCOMPARE(peer.callsAfter(object), QStringList{QStringLiteral("setRecordComment(device, %1, %1)").arg(record)});
}

void TestCorbaReference::takesWideTextsOfARemoteObject()
{
    Peer peer;
    const CORBA::Object_var object = peer.orb.remoteObject(overTheWire, peer.orb.port(), "Admin");
    QCOMPARE(peer.callsAfter(object), QStringList{QStringLiteral("setRecordComment(device, %1, %1)").arg(record)});
}

void TestCorbaReference::leavesAReferenceThatNamesItsCodeSetsAsItIs()
{
    Peer peer;
    const CORBA::Object_var once = peer.orb.reference(peer.ior());
    const CORBA::String_var text = peer.orb.orb()->object_to_string(once);
    QVERIFY(peer.ior() != text.in());
    const CORBA::Object_var twice = peer.orb.reference(text.in());
    const CORBA::String_var again = peer.orb.orb()->object_to_string(twice);
    QCOMPARE(again.in(), text.in());
}

void TestCorbaReference::tellsOfATextThatIsNoReference_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << "";
    QTest::newRow("a word") << "recorder";
    QTest::newRow("a corbaloc without anything") << "corbaloc:";
    QTest::newRow("a corbaloc with a port that cannot be") << "corbaloc::127.0.0.1:70000/Admin";
    QTest::newRow("a corbaloc of an unknown protocol") << "corbaloc:carrier:127.0.0.1/Admin";
    QTest::newRow("an IOR without anything") << "IOR:";
    QTest::newRow("an IOR that ends too early") << "IOR:010000000f000000";
    QTest::newRow("an IOR with a length beyond its end") << "IOR:0100000001000000000000000000ff7f";
    QTest::newRow("an IOR of letters") << "IOR:xyz";
    QTest::newRow("the scheme of a file") << "file:///etc/hostname";
}

void TestCorbaReference::tellsOfATextThatIsNoReference()
{
    QFETCH(QString, text);
    const Orb orb({});
    QVERIFY_EXCEPTION_THROWN(orb.reference(text), CORBA::SystemException);
}

void TestCorbaReference::tellsThatNobodyHasAName()
{
    const Peer peer;
    QVERIFY_EXCEPTION_THROWN(
        peer.orb.reference(QStringLiteral("corbaname::127.1:%1/Names#nobody").arg(peer.orb.port())),
        CORBA::SystemException);
}

void TestCorbaReference::isNilForTheReferenceOfNothing()
{
    const Orb orb({});
    const CORBA::Object_var object = orb.reference("IOR:010000000100000000000000"
                                                   "00000000");
    QVERIFY(CORBA::is_nil(object));
}

void TestCorbaReference::isUsableForAnObjectOfThisProcess()
{
    Peer peer;
    const CORBA::Object_var object = peer.orb.reference(peer.corbaloc("127.0.0.1:%1"));
    QCOMPARE(peer.callsAfter(object).size(), 1);
}

QTEST_GUILESS_MAIN(TestCorbaReference)
#include "tst_corbareference.moc"
