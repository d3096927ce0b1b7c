#include "faultproxy.h"
#include "frametext.h"
#include "linkserverfixture.h"
#include "patience.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

using namespace ZelkoTest;

class TestTreeLinkServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesTheStateAndThenEachChange();
    void aStateWithAFrameLargerThanTheBacklogComesToAnEnd();
    void refusesAnotherVersion();
    void refusesWhoIsNotKnown();
    void saysWhyNobodyIsAdmittedNow();
    void tellsWhatAUserIs();
    void takesEverybodyForAViewerWithoutAnAuthenticator();
    void knowsNobodyByASessionThatEnded();
    void refusesWhoCannotBeCalledBack();
    void refusesMoreClientsThanItTakes();
    void refusesMoreClientsOfOneHostThanItTakes();
    void takesAClientAgainWhenOneLeft();
    void dropsAClientOfWhichNothingIsHeard();
    void keepsAClientThatIsHeard();
    void refusesSessionsThatItDoesNotKnow();
    void refusesSessionsOfClientsElsewhere();
    void ignoresTheEndOfASessionThatItDoesNotKnow();
    void endsWithoutWaitingForClientsThatAreSilent();
};

void TestTreeLinkServer::givesTheStateAndThenEachChange()
{
    LinkServerFixture f;
    f.number->SetValue(1, nullptr);
    f.attach();
    QTRY_COMPARE_WITH_TIMEOUT(f.received(), treeList(f.tree), patience);
    f.number->SetValue(2, nullptr);
    f.tree.Remove("/A/Locked");
    f.tree.Emplace("/B", std::make_unique<Value<int>>("New"));
    QTRY_COMPARE_WITH_TIMEOUT(f.received(), treeList(f.tree), patience);
    QCOMPARE(f.server.sessionCount(), 1);
    QCOMPARE(f.server.backlogBytes(), std::size_t{0});
    QCOMPARE(f.server.restartCount(), 0);
}

// While the frame waited, each change went beyond the bound, and the state began again.
void TestTreeLinkServer::aStateWithAFrameLargerThanTheBacklogComesToAnEnd()
{
    TreeLinkServerOptions options;
    options.maxBacklogBytes = 100000;
    LinkServerFixture f(options);
    auto* const large = f.tree.Emplace("/A", std::make_unique<Value<QString>>("Large"));
    large->SetValue(QString(2000000, 'x'), nullptr);
    auto held = f.client->hold();
    f.attach();
    for (int number = 1; number <= 500; ++number) {
        f.number->SetValue(number, nullptr);
        QCoreApplication::processEvents();
    }
    held.unlock();
    QTRY_VERIFY_WITH_TIMEOUT(frameTexts(f.stream += f.client->take()).contains("end"), patience);
    QCOMPARE(f.server.restartCount(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(f.received(), treeList(f.tree), patience);
}

void TestTreeLinkServer::refusesAnotherVersion()
{
    LinkServerFixture f;
    QCOMPARE(f.refusalOfAttach("operator", ZelkoTreeLink::PROTOCOL_VERSION - 1),
             "0: it speaks another version of the link");
    QCOMPARE(f.server.sessionCount(), 0);
}

void TestTreeLinkServer::refusesWhoIsNotKnown()
{
    using Outcome = LinkAdmission::Outcome;
    LinkServerFixture f({}, [](const QString& user, const QString& password, const std::string&) {
        const bool known = user == QStringLiteral("Jürgen") && password == "secret";
        return LinkAdmission{known ? Outcome::Admitted : Outcome::Denied};
    });
    QCOMPARE(f.refusalOfAttach("operator"), "1: access is denied: user or password are wrong");
    QCOMPARE(f.refusalOfAttach("J\xc3\xbcrgen"), QString());
}

void TestTreeLinkServer::saysWhyNobodyIsAdmittedNow()
{
    auto outcome = LinkAdmission::Outcome::TooManyTries;
    LinkServerFixture f({}, [&](const QString&, const QString&, const std::string&) { return LinkAdmission{outcome}; });
    QCOMPARE(f.refusalOfAttach("operator"),
             "1: access is denied for a while, as too many wrong passwords came from here");
    outcome = LinkAdmission::Outcome::Busy;
    QCOMPARE(f.refusalOfAttach("operator"), "6: it has too many passwords to check");
    QCOMPARE(f.server.sessionCount(), 0);
}

void TestTreeLinkServer::tellsWhatAUserIs()
{
    auto admission = LinkAdmission{LinkAdmission::Outcome::Admitted};
    LinkServerFixture f({}, [&](const QString&, const QString&, const std::string&) { return admission; });
    for (const auto role : ZelkoCommon::allRoles) {
        admission.role = role;
        const auto session = f.attach("anna");
        QCOMPARE(int{f.remote->roleOf(session)}, static_cast<int>(role)); // they stand in the same order
        QCOMPARE(f.server.users()(session, here), (LinkUser{"anna", role}));
    }
}

void TestTreeLinkServer::takesEverybodyForAViewerWithoutAnAuthenticator()
{
    LinkServerFixture f;
    QCOMPARE(int{f.remote->roleOf(f.attach("administrator"))}, int{ZelkoTreeLink::ROLE_VIEWER});
}

void TestTreeLinkServer::knowsNobodyByASessionThatEnded()
{
    auto f = std::make_unique<LinkServerFixture>();
    const auto first = f->attach();
    const auto second = f->attach();
    const auto users = f->server.users();
    QTRY_COMPARE_WITH_TIMEOUT(f->server.sessionCount(), 2, patience);
    f->remote->detach(first);
    QTRY_COMPARE_WITH_TIMEOUT(f->server.sessionCount(), 1, patience);
    QVERIFY(!users(first, here));
    QVERIFY_EXCEPTION_THROWN(f->remote->roleOf(first), ZelkoTreeLink::Refused);
    QVERIFY(!users(0, here));
    QVERIFY(users(second, here));
    f.reset();
    QVERIFY(!users(second, here));
}

void TestTreeLinkServer::refusesWhoCannotBeCalledBack()
{
    LinkServerFixture f;
    f.reference = ZelkoTreeLink::Subscriber::_nil();
    QCOMPARE(f.refusalOfAttach("operator"), "1: there is nobody to call back");
}

void TestTreeLinkServer::refusesMoreClientsThanItTakes()
{
    TreeLinkServerOptions options;
    options.maxSessions = 2;
    LinkServerFixture f(options);
    f.attach();
    f.attach();
    QCOMPARE(f.refusalOfAttach("operator"), "2: it has as many clients as it takes");
    QTRY_COMPARE_WITH_TIMEOUT(f.server.sessionCount(), 2, patience);
}

void TestTreeLinkServer::refusesMoreClientsOfOneHostThanItTakes()
{
    TreeLinkServerOptions options;
    options.maxSessionsPerPeer = 2;
    LinkServerFixture f(options);
    f.attach();
    const auto second = f.attach();
    QCOMPARE(f.refusalOfAttach("operator"), "2: it has as many clients as it takes");
    f.remote->detach(second);
    QTRY_COMPARE_WITH_TIMEOUT(f.server.sessionCount(), 1, patience);
    QCOMPARE(f.refusalOfAttach("operator"), QString());
}

void TestTreeLinkServer::takesAClientAgainWhenOneLeft()
{
    TreeLinkServerOptions options;
    options.maxSessions = 1;
    LinkServerFixture f(options);
    QSignalSpy closed(&f.server, &TreeLinkServer::sessionClosed);
    const auto session = f.attach();
    f.remote->detach(session);
    QTRY_COMPARE_WITH_TIMEOUT(closed.size(), 1, patience);
    QCOMPARE(closed.takeFirst(), (QVariantList{"operator", "the client left"}));
    QCOMPARE(f.refusalOfAttach("operator"), QString());
}

void TestTreeLinkServer::dropsAClientOfWhichNothingIsHeard()
{
    TreeLinkServerOptions options;
    options.maxSilence = 100ms;
    LinkServerFixture f(options);
    QSignalSpy closed(&f.server, &TreeLinkServer::sessionClosed);
    const auto session = f.attach();
    QTRY_COMPARE_WITH_TIMEOUT(closed.size(), 1, patience);
    QCOMPARE(closed.takeFirst(), (QVariantList{"operator", "nothing was heard of the client"}));
    QCOMPARE(f.write(session, {}), "3: it does not know this session any more");
}

void TestTreeLinkServer::keepsAClientThatIsHeard()
{
    TreeLinkServerOptions options;
    options.maxSilence = 1500ms;
    LinkServerFixture f(options);
    QSignalSpy closed(&f.server, &TreeLinkServer::sessionClosed);
    const auto heard = f.attach();
    const auto silent = f.attach();
    QString refusal;
    const auto closedMeanwhile = [&] {
        refusal += f.write(heard, {});
        return closed.size();
    };
    QTRY_COMPARE_WITH_TIMEOUT(closedMeanwhile(), 1, patience);
    QCOMPARE(refusal, QString());
    QCOMPARE(f.server.sessionCount(), 1);
    QVERIFY(f.write(silent, {}).startsWith("3: "));
}

void TestTreeLinkServer::refusesSessionsThatItDoesNotKnow()
{
    LinkServerFixture f;
    const auto session = f.attach();
    QCOMPARE(f.write(session + 1, FrameStream().commands(2, setInt(5)).bytes()),
             "3: it does not know this session any more");
    QCOMPARE(f.number->GetValue(), 0);
}

// Whoever overheard a number can do nothing with it: these calls come from 127.0.0.1, those of the client from here.
void TestTreeLinkServer::refusesSessionsOfClientsElsewhere()
{
    LinkServerFixture f;
    const auto session = f.attach();
    FaultProxy proxy(f.orb.port());
    const CORBA::Object_var object = f.orb.remoteObject("127.0.0.1", proxy.port(), ZelkoTreeLink::OBJECT_KEY);
    const auto own = std::exchange(f.remote, ZelkoTreeLink::TreeServer::_unchecked_narrow(object));
    QCOMPARE(f.write(session, FrameStream().commands(2, setInt(5)).bytes()),
             "3: it does not know this session any more");
    QCOMPARE(f.number->GetValue(), 0);
    QVERIFY_EXCEPTION_THROWN(f.remote->roleOf(session), ZelkoTreeLink::Refused);
    f.remote->detach(session);
    f.remote = own;
    QCOMPARE(f.write(session, {}), QString());
    QVERIFY(!f.server.users()(session, "127.0.0.1"));
}

void TestTreeLinkServer::ignoresTheEndOfASessionThatItDoesNotKnow()
{
    LinkServerFixture f;
    const auto session = f.attach();
    f.remote->detach(session + 1);
    QCOMPARE(f.write(session, {}), QString());
    QTRY_COMPARE_WITH_TIMEOUT(f.server.sessionCount(), 1, patience);
}

// They take the connection, and never answer what they are called for.
void TestTreeLinkServer::endsWithoutWaitingForClientsThatAreSilent()
{
    TreeLinkServerOptions options;
    options.deliverTimeout = 1h;
    auto f = std::make_unique<LinkServerFixture>(options);
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    std::vector<QTcpSocket*> calls;
    for (int i = 0; i < 3; ++i) {
        const CORBA::Object_var object =
            f->orb.remoteObject("127.0.0.1", silent.serverPort(), QByteArray::number(i).constData());
        f->reference = ZelkoTreeLink::Subscriber::_unchecked_narrow(object);
        f->attach();
        QTRY_VERIFY_WITH_TIMEOUT(silent.hasPendingConnections(), 30'000);
        calls.push_back(silent.nextPendingConnection());
        QTRY_VERIFY_WITH_TIMEOUT(calls.back()->bytesAvailable() > 0, 30'000);
    }
    f.reset();
    for (QTcpSocket* const call : calls) {
        QTRY_COMPARE_WITH_TIMEOUT(call->state(), QAbstractSocket::UnconnectedState, 30'000);
    }
}

QTEST_GUILESS_MAIN(TestTreeLinkServer)
#include "tst_treelinkserver.moc"
