#include <console/session/consoleuser.h>
#include <console/session/session.h>

#include <QSignalSpy>
#include <QTest>

using namespace ZelkoConsole;
using ZelkoCommon::LinkCredentials;
using ZelkoCommon::Role;

namespace {

// A session that keeps for whom it acts, and whose recorders say what they are told to say.
class FakeSession final : public Session
{
    Q_OBJECT

public:
    QStringList subSystems() const override { return {QStringLiteral("north"), QStringLiteral("south")}; }
    SubSystemStatus status(const QString& subSystem) const override { return statuses.value(subSystem); }
    std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> connectionData() const override { return nullptr; }
    const std::vector<KnownUser>& knownUsers() const override { return known; }
    QString configuredUser() const override { return configured; }
    void actFor(const LinkCredentials& user) override
    {
        actedFor.append(user.user + QLatin1Char('/') + user.password);
        said.clear();
    }
    std::optional<Role> role(const QString& subSystem) const override { return said.value(subSystem); }

    void say(std::optional<Role> role, const QString& subSystem = QStringLiteral("north"))
    {
        said.insert(subSystem, role);
        Q_EMIT statusChanged(subSystem);
    }

    void become(LinkState state, const QString& subSystem, const QString& reason = QString())
    {
        statuses.insert(subSystem, {state, reason});
        Q_EMIT statusChanged(subSystem);
    }

    std::vector<KnownUser> known;
    QString configured;
    QStringList actedFor;
    QHash<QString, std::optional<Role>> said;
    QHash<QString, SubSystemStatus> statuses;
};

std::vector<KnownUser> threeUsers()
{
    return {{{"viewer", "v"}, Role::Viewer},
            {{"operator", "o"}, Role::Operator},
            {{"administrator", "a"}, Role::Administrator}};
}

} // namespace

class TestConsoleUser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beginsAsTheOperatorOfItsOwnRecorder();
    void beginsAsTheUserOfTheSite();
    void switchesToAKnownUser_data();
    void switchesToAKnownUser();
    void doesNotSwitchToSomebodyElse();
    void mayWhatTheRecorderSays();
    void mayNothingUntilARecorderAdmitsHim();
    void mayWhatTheRecorderSaysThatHeWorksWith();
    void mayTheLeastWhileHeWorksWithNoneInParticular();
    void tellsOnceThatHeIsDenied();
    void tellsNothingOfARecorderThatHeDoesNotWorkWith();
    void tellsNothingOfADenialThatNobodyAskedFor();
    void takesNoConnectionOfTheUserBeforeForAnAnswer();
    void tellsWhichAttemptWasDenied();
    void isDeniedUntilHeIsAdmitted();
    void tellsEachChangeOnce();
    void isNobodyAfterLoggingOut();
    void leavesNoRightsBehind();
    void mayWhatHisRoleMay_data();
    void mayWhatHisRoleMay();
};

void TestConsoleUser::beginsAsTheOperatorOfItsOwnRecorder()
{
    FakeSession session;
    session.known = threeUsers();
    const ConsoleUser user(session);
    QCOMPARE(user.name(), "operator");
    QCOMPARE(user.role(), Role::Operator);
    QCOMPARE(user.knownUsers(), (QStringList{"viewer", "operator", "administrator"}));
    QCOMPARE(session.actedFor, QStringList{"operator/o"});
    QCOMPARE(UserRights::Instance()->GetUser(), "operator");
    QVERIFY(UserRights::DeleteRecordsAllowed());
}

void TestConsoleUser::beginsAsTheUserOfTheSite()
{
    FakeSession session;
    session.configured = "anna";
    const ConsoleUser user(session);
    QCOMPARE(user.name(), "anna");
    QVERIFY(user.knownUsers().isEmpty());
    QVERIFY(session.actedFor.isEmpty()); // the site has the password, the console does not
    QCOMPARE(UserRights::Instance()->GetUser(), "anna");
    QVERIFY(!UserRights::DeleteRecordsAllowed());
}

void TestConsoleUser::switchesToAKnownUser_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Role>("role");
    QTest::addColumn<QString>("actedFor");
    QTest::addColumn<bool>("deletes");
    QTest::addColumn<bool>("administrates");
    QTest::newRow("the viewer") << "viewer" << Role::Viewer << "viewer/v" << false << false;
    QTest::newRow("the administrator") << "administrator" << Role::Administrator << "administrator/a" << true << true;
}

void TestConsoleUser::switchesToAKnownUser()
{
    QFETCH(const QString, name);
    FakeSession session;
    session.known = threeUsers();
    ConsoleUser user(session);
    session.say(Role::Operator);
    const QSignalSpy changed(&user, &ConsoleUser::changed);
    QVERIFY(user.switchTo(name));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(user.name(), name);
    QTEST(user.role(), "role");
    QTEST(session.actedFor.constLast(), "actedFor");
    QTEST(UserRights::DeleteRecordsAllowed(), "deletes");
    QTEST(UserRights::AdminAllowed(), "administrates");
}

void TestConsoleUser::doesNotSwitchToSomebodyElse()
{
    FakeSession session;
    session.known = threeUsers();
    ConsoleUser user(session);
    const QSignalSpy changed(&user, &ConsoleUser::changed);
    QVERIFY(!user.switchTo("anna"));
    QVERIFY(!user.switchTo(QString()));
    QCOMPARE(user.name(), "operator");
    QCOMPARE(changed.count(), 0);
    QCOMPARE(session.actedFor.size(), 1);
}

void TestConsoleUser::mayWhatTheRecorderSays()
{
    FakeSession session;
    session.known = threeUsers();
    ConsoleUser user(session);
    session.say(Role::Viewer);
    QCOMPARE(user.role(), Role::Viewer);
    QVERIFY(!UserRights::DeleteRecordsAllowed());
    session.say(std::nullopt);
    QVERIFY(UserRights::DeleteRecordsAllowed());
}

void TestConsoleUser::mayNothingUntilARecorderAdmitsHim()
{
    FakeSession session;
    ConsoleUser user(session);
    user.logIn({"anna", "secret"});
    QCOMPARE(session.actedFor, QStringList{"anna/secret"});
    QCOMPARE(user.name(), "anna");
    QVERIFY(!UserRights::DeleteRecordsAllowed());
    session.say(Role::Operator);
    QVERIFY(UserRights::DeleteRecordsAllowed());
    QCOMPARE(UserRights::Instance()->GetUser(), "anna");
}

void TestConsoleUser::mayWhatTheRecorderSaysThatHeWorksWith()
{
    FakeSession session;
    ConsoleUser user(session);
    user.logIn({"anna", "secret"});
    session.say(Role::Operator, "north");
    session.say(Role::Viewer, "south");
    user.workAt("north");
    QCOMPARE(user.role(), Role::Operator);
    QVERIFY(UserRights::DeleteRecordsAllowed());
    const QSignalSpy changed(&user, &ConsoleUser::changed);
    user.workAt("south");
    QCOMPARE(changed.count(), 1);
    QCOMPARE(user.role(), Role::Viewer);
    QVERIFY(!UserRights::DeleteRecordsAllowed());
    session.say(Role::Administrator, "south");
    QVERIFY(UserRights::AdminAllowed());
}

void TestConsoleUser::mayTheLeastWhileHeWorksWithNoneInParticular()
{
    FakeSession session;
    ConsoleUser user(session);
    session.say(Role::Operator, "north");
    QCOMPARE(user.role(), Role::Operator);
    session.say(Role::Viewer, "south");
    QCOMPARE(user.role(), Role::Viewer);
}

void TestConsoleUser::tellsOnceThatHeIsDenied()
{
    FakeSession session;
    ConsoleUser user(session);
    user.workAt("north");
    const QSignalSpy denied(&user, &ConsoleUser::denied);
    user.logIn({"anna", "wrong"});
    session.become(LinkState::Denied, "north", "user or password are wrong");
    session.become(LinkState::Denied, "north", "user or password are wrong"); // it is tried again by itself
    QCOMPARE(denied.count(), 1);
    QCOMPARE(denied.at(0).at(0).toString(), "user or password are wrong");
    user.logIn({"anna", "wrong again"});
    QCOMPARE(denied.count(), 1);
    session.become(LinkState::Denied, "north", "user or password are wrong");
    QCOMPARE(denied.count(), 2);
}

void TestConsoleUser::tellsNothingOfARecorderThatHeDoesNotWorkWith()
{
    FakeSession session;
    ConsoleUser user(session);
    user.workAt("north");
    const QSignalSpy denied(&user, &ConsoleUser::denied);
    user.logIn({"anna", "secret"});
    session.become(LinkState::Denied, "south", "user or password are wrong");
    QVERIFY(!user.isDenied());
    session.say(Role::Operator, "north");
    session.become(LinkState::Connected, "north");
    user.workAt("south");
    session.become(LinkState::Denied, "south", "user or password are wrong");
    QVERIFY(user.isDenied());
    QCOMPARE(denied.count(), 0);
}

void TestConsoleUser::tellsNothingOfADenialThatNobodyAskedFor()
{
    FakeSession session;
    session.configured = "anna";
    ConsoleUser user(session);
    const QSignalSpy denied(&user, &ConsoleUser::denied);
    session.become(LinkState::Denied, "north", "user or password are wrong");
    user.logIn({"anna", "secret"});
    user.logOut();
    session.become(LinkState::Denied, "north", "the recorder wants a user");
    QCOMPARE(denied.count(), 0);
}

// It was taken for the admission of the next one, whose denial nobody heard of then.
void TestConsoleUser::takesNoConnectionOfTheUserBeforeForAnAnswer()
{
    FakeSession session;
    ConsoleUser user(session);
    const QSignalSpy denied(&user, &ConsoleUser::denied);
    user.logIn({"anna", "secret"});
    user.logIn({"berta", "wrong"});
    session.become(LinkState::Connected, "north"); // Anna's, for which Berta has no role
    session.become(LinkState::Unreachable, "north");
    session.become(LinkState::Denied, "north", "user or password are wrong");
    QCOMPARE(denied.count(), 1);
}

void TestConsoleUser::tellsWhichAttemptWasDenied()
{
    FakeSession session;
    ConsoleUser user(session);
    const QSignalSpy denied(&user, &ConsoleUser::denied);
    user.logIn({"anna", "wrong"});
    session.become(LinkState::Denied, "north", "user or password are wrong");
    QCOMPARE(denied.count(), 1);
    QCOMPARE(denied.at(0).at(1).toInt(), user.attempt());
    user.logIn({"anna", "right"});
    QVERIFY(denied.at(0).at(1).toInt() != user.attempt());
}

void TestConsoleUser::isDeniedUntilHeIsAdmitted()
{
    FakeSession session;
    const ConsoleUser user(session);
    const QSignalSpy changed(&user, &ConsoleUser::changed);
    QVERIFY(!user.isDenied());
    session.become(LinkState::Denied, "north");
    QVERIFY(user.isDenied());
    QCOMPARE(changed.count(), 1);
    session.become(LinkState::Connected, "south"); // somebody admits him
    QVERIFY(!user.isDenied());
    QCOMPARE(changed.count(), 2);
}

void TestConsoleUser::tellsEachChangeOnce()
{
    FakeSession session;
    ConsoleUser user(session);
    const QSignalSpy changed(&user, &ConsoleUser::changed);
    user.logIn({"anna", "secret"});
    QCOMPARE(changed.count(), 1);
    session.say(Role::Operator);
    QCOMPARE(changed.count(), 2);
    session.say(Role::Operator);
    QCOMPARE(changed.count(), 2);
    user.logIn({"anna", "the right one"});
    QCOMPARE(changed.count(), 3); // what she may is to be found out again
}

void TestConsoleUser::isNobodyAfterLoggingOut()
{
    FakeSession session;
    session.known = threeUsers();
    ConsoleUser user(session);
    session.say(Role::Operator);
    user.logOut();
    QCOMPARE(user.name(), QString());
    QCOMPARE(user.role(), Role::Viewer);
    QCOMPARE(session.actedFor.constLast(), "/");
    QVERIFY(!UserRights::DeleteRecordsAllowed());
}

void TestConsoleUser::leavesNoRightsBehind()
{
    FakeSession session;
    session.known = threeUsers();
    {
        const ConsoleUser user(session);
        QVERIFY(UserRights::DeleteRecordsAllowed());
    }
    QVERIFY(!UserRights::DeleteRecordsAllowed());
    QCOMPARE(UserRights::Instance()->GetUser(), QString());
}

void TestConsoleUser::mayWhatHisRoleMay_data()
{
    QTest::addColumn<Role>("role");
    QTest::addColumn<UserRights::Rights>("rights");
    const UserRights::Rights operators = UserRights::DeleteRecords | UserRights::Archiving |
                                         UserRights::HistoryComment | UserRights::ResetRecord | UserRights::PerformBite;
    QTest::newRow("a viewer") << Role::Viewer << UserRights::Rights();
    QTest::newRow("an operator") << Role::Operator << operators;
    QTest::newRow("an administrator") << Role::Administrator
                                      << (operators | UserRights::RemoteConfig | UserRights::Admin);
}

void TestConsoleUser::mayWhatHisRoleMay()
{
    QFETCH(const Role, role);
    QTEST(ConsoleUser::rightsOf(role), "rights");
}

QTEST_GUILESS_MAIN(TestConsoleUser)
#include "tst_consoleuser.moc"
