#include "peerprocess.h"
#include "servicesite.h"

#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/recorderservice.h>

#include <QTcpServer>
#include <QTest>

#include <thread>

using namespace ZelkoCommon;
using namespace std::chrono_literals;

namespace {

unsigned long code(ServiceStatus status)
{
    return statusCode(status);
}

ServiceAddress local(quint16 port)
{
    return {{}, QStringLiteral("127.0.0.1"), port};
}

// Gives up only where a test says so, on however loaded a machine.
class PatientService : public RecorderService
{
public:
    explicit PatientService(AddressSource address)
        : RecorderService(std::move(address))
    {
        setLimit(60s);
    }
    explicit PatientService(quint16 port)
        : PatientService([port] { return local(port); })
    {}
};

unsigned long comment(RecorderService& service)
{
    return service.askAdmin([](QD_ZLK::IF_ZELKO_Admin_ptr admin) -> unsigned long {
        return admin->setRecordComment("D1", "R1", toWideCorba("text"));
    });
}

unsigned long askWorkstation(RecorderService& service)
{
    return service.ask([](QD_ZLK::IF_ZLK_c_ZLK_ptr root) {
        const CORBA::String_var name = root->getWorkstationName();
        return code(ServiceStatus::None);
    });
}

quint16 unusedPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

// No limit but the question's own ends a call.
OrbOptions patientOptions()
{
    OrbOptions options;
    options.callTimeout = 600s;
    return options;
}

} // namespace

class tst_RecorderService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callsReachThePeerOverTheNetwork();
    void theServiceIsFoundOnceForManyQuestions();
    void aQuestionIsAskedAgainAfterARestart();
    void aServiceThatMovedIsFoundThere();
    void aCallOfARestartedRecorderIsNotMadeTwice();
    void whatCannotBeFoundHasAStatus_data();
    void whatCannotBeFoundHasAStatus();
    void aHostOfAReferenceIsLookedUp_data();
    void aHostOfAReferenceIsLookedUp();
    void aHostOfAReferenceThatNobodyKnows();
    void nobodyListening();
    void aListenerThatNeverAnswersCostsTheLimit();
    void aHeldCallCostsTheLimit();
    void aLimitBelowAMillisecondIsAMillisecond();
    void aRecorderWithoutAdministration();
    void exceptionsOfTheRecorderGiveCodeAndText_data();
    void exceptionsOfTheRecorderGiveCodeAndText();
    void whatACallThrowsStaysInside();
    void aStatusOfOursIsNoAnswer();
    void successClearsTheText();
    void aConnectionWithoutCodeSetsIsNotTriedAgain();
    void aKilledRecorderIsFoundAgain();
    void aStoppedRecorderCostsTheLimitAndIsFoundAgain();
    void withoutAnOrbNothingIsStarted();
};

void tst_RecorderService::callsReachThePeerOverTheNetwork()
{
    ServiceSite site;
    PatientService service(site.proxy.port());
    QCOMPARE(comment(service), 0UL);
    QCOMPARE(site.peer.calls(), QStringList("setRecordComment D1 R1 text"));
    QVERIFY(site.peer.wasCalledOverNetwork());
}

void tst_RecorderService::theServiceIsFoundOnceForManyQuestions()
{
    ServiceSite site;
    PatientService service(site.proxy.port());
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(comment(service), 0UL);
    }
    QCOMPARE(site.peer.adminRequests(), 1);
    service.forget();
    QCOMPARE(comment(service), 0UL);
    QCOMPARE(site.peer.adminRequests(), 2);
}

void tst_RecorderService::aQuestionIsAskedAgainAfterARestart()
{
    ServiceSite site;
    PatientService service(site.proxy.port());
    QCOMPARE(comment(service), 0UL);
    site.peer.restart();
    QCOMPARE(comment(service), 0UL);
    QCOMPARE(site.peer.calls().size(), 2);
    QCOMPARE(site.peer.adminRequests(), 2);
}

void tst_RecorderService::aServiceThatMovedIsFoundThere()
{
    ServiceSite site;
    FaultProxy elsewhere(site.orb.port());
    quint16 port = site.proxy.port();
    PatientService service([&port] { return local(port); });
    QCOMPARE(askWorkstation(service), 0UL);
    port = elsewhere.port();
    QCOMPARE(askWorkstation(service), 0UL);
    QVERIFY(elsewhere.connections() > 0);
}

// The connection breaks after the call has arrived: whether it was done cannot be known, so it must not be repeated.
void tst_RecorderService::aCallOfARestartedRecorderIsNotMadeTwice()
{
    ServiceSite site;
    PatientService service(site.proxy.port());
    QCOMPARE(comment(service), 0UL);
    site.peer.forgetCalls();
    site.peer.setAction("setRecordComment", [&] {
        site.proxy.cut();
        site.peer.setAction("setRecordComment", {});
        while (site.proxy.cutConnections() < 1) { // the answer must not overtake the cut
            std::this_thread::yield();
        }
    });
    QCOMPARE(comment(service), code(ServiceStatus::RecorderGone));
    QCOMPARE(site.peer.calls().size(), 1);
    QCOMPARE(comment(service), 0UL);
    QCOMPARE(site.peer.calls().size(), 2);
}

void tst_RecorderService::whatCannotBeFoundHasAStatus_data()
{
    QTest::addColumn<QString>("reference");
    QTest::addColumn<QString>("host");
    QTest::addColumn<ServiceStatus>("status");
    QTest::newRow("no address at all") << ""
                                       << "" << ServiceStatus::NotConfigured;
    QTest::newRow("a host with a blank") << ""
                                         << "a b" << ServiceStatus::NotConfigured;
    QTest::newRow("a host that means something to the ORB") << ""
                                                            << "127.0.0.1/other" << ServiceStatus::NotConfigured;
    QTest::newRow("a reference of no kind") << "nonsense"
                                            << "" << ServiceStatus::NotConfigured;
    QTest::newRow("a corbaloc without an end") << "corbaloc::1.2@"
                                               << "" << ServiceStatus::NotConfigured;
    QTest::newRow("an IOR that is none") << "IOR:zz"
                                         << "" << ServiceStatus::NotConfigured;
    QTest::newRow("a cut IOR") << "IOR:0000"
                               << "" << ServiceStatus::NotConfigured;
    QTest::newRow("the IOR of nothing") << "IOR:01000000010000000000000000000000"
                                        << "" << ServiceStatus::ServiceNotOffered;
}

void tst_RecorderService::whatCannotBeFoundHasAStatus()
{
    QFETCH(QString, reference);
    QFETCH(QString, host);
    QFETCH(ServiceStatus, status);
    ServiceSite site;
    PatientService service([&] { return ServiceAddress{reference, host, site.proxy.port()}; });
    QCOMPARE(comment(service), code(status));
    QCOMPARE(service.connect(), code(status));
    QVERIFY(service.lastErrorText().startsWith(serviceStatusText(code(status))));
    QCOMPARE(site.peer.calls(), QStringList());
}

void tst_RecorderService::aHostOfAReferenceIsLookedUp_data()
{
    QTest::addColumn<QString>("places");
    QTest::newRow("one host") << ":1.2@localhost:%1";
    QTest::newRow("a host that nobody knows and one") << ":1.2@" + QString(300, 'x') + ":%1,:1.2@localhost:%1";
}

void tst_RecorderService::aHostOfAReferenceIsLookedUp()
{
    QFETCH(const QString, places);
    ServiceSite site;
    const QString reference = "corbaloc:" + places.arg(site.proxy.port()) + "/RecorderService";
    PatientService service([&] { return ServiceAddress{reference, {}, 0}; });
    QCOMPARE(comment(service), 0UL);
    QVERIFY(site.peer.wasCalledOverNetwork());
}

// The ORB would look the name up when it calls, and say something of its own of that.
void tst_RecorderService::aHostOfAReferenceThatNobodyKnows()
{
    const QString host(300, 'x');
    Orb orb{OrbOptions()};
    PatientService service([&] { return ServiceAddress{"corbaloc::1.2@" + host + ":1/RecorderService", {}, 0}; });
    QCOMPARE(comment(service), code(ServiceStatus::NotReachable));
    QVERIFY2(service.lastErrorText().contains(host), qPrintable(service.lastErrorText()));
}

void tst_RecorderService::nobodyListening()
{
    Orb orb{OrbOptions()};
    PatientService service(unusedPort());
    QCOMPARE(comment(service), code(ServiceStatus::NotReachable));
    QVERIFY(service.lastErrorText().startsWith(serviceStatusText(code(ServiceStatus::NotReachable))));
}

// Nothing but the question's limit can end it, and a longer one would be the test's.
void tst_RecorderService::aListenerThatNeverAnswersCostsTheLimit()
{
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    Orb orb(patientOptions());
    PatientService service(silent.serverPort());
    service.setLimit(200ms);
    QCOMPARE(comment(service), code(ServiceStatus::Timeout));
    QVERIFY(!service.lastErrorText().isEmpty());
}

void tst_RecorderService::aHeldCallCostsTheLimit()
{
    ServiceSite site;
    PatientService service(site.proxy.port());
    QCOMPARE(comment(service), 0UL);
    site.peer.setHeld(true);
    service.setLimit(300ms);
    QCOMPARE(comment(service), code(ServiceStatus::Timeout));
    site.peer.setHeld(false);
    service.setLimit(60s);
    QCOMPARE(comment(service), 0UL);
}

void tst_RecorderService::aLimitBelowAMillisecondIsAMillisecond()
{
    RecorderService service([] { return local(1); });
    QCOMPARE(service.limit(), RecorderService::DefaultLimit);
    QCOMPARE(RecorderService::DefaultLimit, 5000ms);
    service.setLimit(-1s);
    QCOMPARE(service.limit(), 1ms);
    service.setLimit(0ms);
    QCOMPARE(service.limit(), 1ms);
}

void tst_RecorderService::aRecorderWithoutAdministration()
{
    ServiceSite site;
    site.peer.setWithoutAdmin(true);
    PatientService service(site.proxy.port());
    QCOMPARE(comment(service), code(ServiceStatus::ServiceNotOffered));
    QCOMPARE(askWorkstation(service), 0UL);
    site.peer.setWithoutAdmin(false);
    QCOMPARE(comment(service), 0UL);
}

void tst_RecorderService::exceptionsOfTheRecorderGiveCodeAndText_data()
{
    using Zlk = QD_ZLK::IF_ZLK_c_ZLK;
    using Action = std::function<void()>;
    QTest::addColumn<Action>("action");
    QTest::addColumn<ServiceStatus>("status");
    QTest::addColumn<QString>("text");
    const auto zlk = [](Zlk::ZLKCode zlkCode) { return Action([=] { throw Zlk::exZLK(zlkCode, "its words"); }); };
    QTest::newRow("exZLK without a reason") << zlk(Zlk::ZLK_FAILED) << ServiceStatus::InternalError << "its words";
    QTest::newRow("exZLK for a device") << zlk(Zlk::ZLK_UNKNOWN_DEVICE) << ServiceStatus::NoSuchDevice << "its words";
    QTest::newRow("exZLK for a record") << zlk(Zlk::ZLK_UNKNOWN_RECORD) << ServiceStatus::NoSuchRecord << "its words";
    QTest::newRow("exZLK for a right") << zlk(Zlk::ZLK_NOT_PERMITTED) << ServiceStatus::NotAllowed << "its words";
    QTest::newRow("exZLK with a text of lines") << Action([] { throw Zlk::exZLK(Zlk::ZLK_FAILED, "two\nlines"); })
                                                << ServiceStatus::InternalError << "two lines";
    QTest::newRow("an exception that is not declared")
        << Action([] { throw QD_ZLK::exGen(QD_ZLK::GEN_INTERNAL, "its words"); }) << ServiceStatus::RecorderFailed
        << "UNKNOWN";
    QTest::newRow("no permission") << Action([] { throw CORBA::NO_PERMISSION(); }) << ServiceStatus::CallRefused
                                   << "NO_PERMISSION";
    QTest::newRow("not implemented") << Action([] { throw CORBA::NO_IMPLEMENT(); }) << ServiceStatus::NotUnderstood
                                     << "NO_IMPLEMENT";
}

void tst_RecorderService::exceptionsOfTheRecorderGiveCodeAndText()
{
    QFETCH(std::function<void()>, action);
    QFETCH(ServiceStatus, status);
    QFETCH(QString, text);
    ServiceSite site;
    site.peer.setAction("cancelExport", action);
    PatientService service(site.proxy.port());
    const auto answer = service.ask([](QD_ZLK::IF_ZLK_c_ZLK_ptr root) {
        root->cancelExport("E1", false);
        return code(ServiceStatus::None);
    });
    QCOMPARE(answer, code(status));
    QVERIFY(service.lastErrorText().startsWith(serviceStatusText(code(status))));
    QVERIFY2(service.lastErrorText().contains(text), qPrintable(service.lastErrorText()));
    QCOMPARE(site.peer.calls().size(), 1);
}

void tst_RecorderService::whatACallThrowsStaysInside()
{
    ServiceSite site;
    PatientService service(site.proxy.port());
    const auto throwing = [&](auto exception) {
        return service.ask([=](QD_ZLK::IF_ZLK_c_ZLK_ptr) -> unsigned long { throw exception; });
    };
    QCOMPARE(throwing(std::runtime_error("its words")), code(ServiceStatus::ClientFailed));
    QVERIFY(service.lastErrorText().contains("its words"));
    QCOMPARE(throwing(4711), code(ServiceStatus::ClientFailed));
    QCOMPARE(throwing(QD_ZLK::exGen(QD_ZLK::GEN_NAME_IN_USE, "taken")), code(ServiceStatus::NameInUse));
    QVERIFY(service.lastErrorText().contains("taken"));
}

void tst_RecorderService::aStatusOfOursIsNoAnswer()
{
    ServiceSite site;
    PatientService service(site.proxy.port());
    site.peer.setAnswer("setRecordComment", firstClientStatus);
    QCOMPARE(comment(service), code(ServiceStatus::BadAnswer));
    site.peer.setAnswer("setRecordComment", firstClientStatus - 1);
    QCOMPARE(comment(service), static_cast<unsigned long>(firstClientStatus - 1));
    QCOMPARE(service.lastErrorText(), serviceStatusText(firstClientStatus - 1));
}

void tst_RecorderService::successClearsTheText()
{
    ServiceSite site;
    PatientService service(site.proxy.port());
    site.peer.setAnswer("setRecordComment", code(ServiceStatus::NotAllowed));
    QCOMPARE(comment(service), code(ServiceStatus::NotAllowed));
    QCOMPARE(service.lastErrorText(), serviceStatusText(code(ServiceStatus::NotAllowed)));
    site.peer.setAnswer("setRecordComment", 0);
    QCOMPARE(comment(service), 0UL);
    QCOMPARE(service.lastErrorText(), QString());
}

// They are told once for a connection; without them the recorder answers every text on it with an error.
void tst_RecorderService::aConnectionWithoutCodeSetsIsNotTriedAgain()
{
    ServiceSite site;
    PatientService service(site.proxy.port());
    site.proxy.setCodeSetsHidden(true);
    QCOMPARE(comment(service), code(ServiceStatus::NotTransmittable));
    QVERIFY(site.proxy.damaged() > 0);
    QCOMPARE(site.peer.calls(), QStringList());
    site.proxy.setCodeSetsHidden(false);
    QCOMPARE(comment(service), 0UL);
    QCOMPARE(site.peer.calls(), QStringList("setRecordComment D1 R1 text"));
}

void tst_RecorderService::aKilledRecorderIsFoundAgain()
{
    Orb orb{OrbOptions()};
    PeerProcess first({}, 0, ZELKO_SERVICE_PEER);
    QVERIFY(first.port() != 0);
    PatientService service(first.port());
    QCOMPARE(comment(service), 0UL);
    first.kill();
    const unsigned long answer = comment(service);
    QVERIFY2(answer == code(ServiceStatus::NotReachable) || answer == code(ServiceStatus::RecorderGone),
             qPrintable(service.lastErrorText()));
    PeerProcess second({}, first.port(), ZELKO_SERVICE_PEER);
    QVERIFY(second.port() != 0);
    QCOMPARE(comment(service), 0UL);
    QCOMPARE(second.ask("calls"), "setRecordComment D1 R1 text");
}

void tst_RecorderService::aStoppedRecorderCostsTheLimitAndIsFoundAgain()
{
    Orb orb(patientOptions());
    PeerProcess peer({}, 0, ZELKO_SERVICE_PEER);
    QVERIFY(peer.port() != 0);
    PatientService service(peer.port());
    QCOMPARE(comment(service), 0UL);
    peer.stop();
    service.setLimit(200ms);
    QCOMPARE(comment(service), code(ServiceStatus::Timeout)); // on the connection that stands
    QCOMPARE(comment(service), code(ServiceStatus::Timeout)); // on the way there
    peer.continueIt();
    service.setLimit(60s);
    QCOMPARE(comment(service), 0UL);
}

void tst_RecorderService::withoutAnOrbNothingIsStarted()
{
    PatientService service(1);
    QCOMPARE(comment(service), code(ServiceStatus::NotStarted));
}

QTEST_GUILESS_MAIN(tst_RecorderService)

#include "tst_recorderservice.moc"
