#include "namingservice.h"
#include "servicesite.h"

#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/guitoserveradmincorbahandler.h>
#include <zelkobase/service/recorderservice.h>

#include <QTcpServer>
#include <QTest>

using namespace ZelkoCommon;
using namespace std::chrono_literals;
using ZelkoTest::NamingService;

namespace {

unsigned long comment(RecorderService& service)
{
    return service.askAdmin([](QD_ZLK::IF_ZELKO_Admin_ptr admin) -> unsigned long {
        return admin->setRecordComment("D1", "R1", toWideCorba("text"));
    });
}

// A site whose recorder has the name "recorder" with a naming service, both called over the network.
struct NamedSite : ServiceSite
{
    NamedSite()
    {
        orb.publish("NameService", names);
        nameRecorderAt(proxy.port());
    }
    ~NamedSite()
    {
        names->setHeld(false);
        orb.withdraw("NameService");
    }

    void nameRecorderAt(quint16 port)
    {
        const CORBA::Object_var object = orb.reference(
            QStringLiteral("corbaloc::1.2@127.0.0.1:%1/%2").arg(port).arg(QLatin1String(recorderServiceKey)));
        names->name("recorder", object);
    }

    QString reference(const QString& name = QStringLiteral("recorder")) const
    {
        return QStringLiteral("corbaname::127.0.0.1:%1#%2").arg(namesProxy.port()).arg(name);
    }
    RecorderService::AddressSource addressOf(const QString& text) const
    {
        return [text] { return ServiceAddress{text, {}, 0}; };
    }

    FaultProxy namesProxy{orb.port()};
    NamingService* const names = new NamingService;
    const PortableServer::ServantBase_var guard{names};
};

// Whether a question ends with the status and its text.
bool endsWith(RecorderService& service, ServiceStatus status)
{
    const bool isStatus = comment(service) == statusCode(status);
    return isStatus && service.lastErrorText().startsWith(serviceStatusText(statusCode(status)));
}

} // namespace

// A recorder that is not found at an address, but by its name with a naming service.
class TestRecorderNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheRecorder();
    void findsItOnceForManyQuestions();
    void findsItAgainAfterARestart();
    void findsItWhereItHasMoved();
    void saysThatNobodyHasTheName();
    void saysThatTheNamingServiceDoesNotAnswer();
    void saysThatThereIsNoNamingService();
    void servesAHandler();
};

void TestRecorderNames::findsTheRecorder()
{
    NamedSite site;
    RecorderService service(site.addressOf(site.reference()));
    service.setLimit(60s);
    QCOMPARE(comment(service), 0UL);
    QCOMPARE(service.lastErrorText(), QString());
    QCOMPARE(site.peer.calls(), QStringList("setRecordComment D1 R1 text"));
    QVERIFY(site.peer.wasCalledOverNetwork());
    QVERIFY(site.namesProxy.connections() > 0);
}

void TestRecorderNames::findsItOnceForManyQuestions()
{
    NamedSite site;
    RecorderService service(site.addressOf(site.reference()));
    service.setLimit(60s);
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(comment(service), 0UL);
    }
    QCOMPARE(site.names->questions(), 1);
}

void TestRecorderNames::findsItAgainAfterARestart()
{
    NamedSite site;
    RecorderService service(site.addressOf(site.reference()));
    service.setLimit(60s);
    QCOMPARE(comment(service), 0UL);
    site.peer.restart();
    QCOMPARE(comment(service), 0UL);
    QCOMPARE(site.peer.calls().size(), 2);
    QCOMPARE(site.names->questions(), 2);
}

// The naming service has the new address before anybody asks again.
void TestRecorderNames::findsItWhereItHasMoved()
{
    NamedSite site;
    RecorderService service(site.addressOf(site.reference()));
    service.setLimit(60s);
    QCOMPARE(comment(service), 0UL);
    FaultProxy elsewhere(site.orb.port());
    site.nameRecorderAt(elsewhere.port());
    site.peer.restart();
    QCOMPARE(comment(service), 0UL);
    QVERIFY(elsewhere.connections() > 0);
}

void TestRecorderNames::saysThatNobodyHasTheName()
{
    NamedSite site;
    RecorderService service(site.addressOf(site.reference(QStringLiteral("nobody"))));
    service.setLimit(60s);
    QVERIFY2(endsWith(service, ServiceStatus::NotConfigured), qPrintable(service.lastErrorText()));
    QVERIFY2(service.lastErrorText().contains("#nobody"), qPrintable(service.lastErrorText()));
    QVERIFY(site.peer.calls().isEmpty());
}

void TestRecorderNames::saysThatTheNamingServiceDoesNotAnswer()
{
    NamedSite site;
    RecorderService service(site.addressOf(site.reference()));
    service.setLimit(300ms);
    site.names->setHeld(true);
    QVERIFY2(endsWith(service, ServiceStatus::Timeout), qPrintable(service.lastErrorText()));
    site.names->setHeld(false);
    service.setLimit(60s);
    QCOMPARE(comment(service), 0UL);
}

void TestRecorderNames::saysThatThereIsNoNamingService()
{
    NamedSite site;
    QTcpServer probe;
    QVERIFY(probe.listen(QHostAddress::LocalHost));
    const quint16 port = probe.serverPort();
    probe.close();
    RecorderService service(site.addressOf(QStringLiteral("corbaname::127.0.0.1:%1#recorder").arg(port)));
    service.setLimit(60s);
    QVERIFY2(endsWith(service, ServiceStatus::NotReachable), qPrintable(service.lastErrorText()));
}

void TestRecorderNames::servesAHandler()
{
    NamedSite site;
    ZelkoConfiguration configuration;
    QVERIFY(configuration.AddSubSystem({"north", "127.0.0.1", 1, site.reference()}));
    const auto handler =
        std::make_shared<ZelkoGUI::ZelkoGuiToServerCorbaHandler>(std::make_shared<FakeConnectionData>(configuration));
    handler->setLimit(60s);
    ZelkoGUI::GuiToServerAdminCorbaHandler admin(handler);
    QCOMPARE(admin.SetRecordComment("D1", "R1", "text"), 0UL);
    QCOMPARE(site.peer.calls(), QStringList("setRecordComment D1 R1 text"));
}

QTEST_GUILESS_MAIN(TestRecorderNames)
#include "tst_recordernames.moc"
