#include <recorder/users/authenticator.h>

#include <testusers.h>

#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

using namespace ZelkoRecorder;
using namespace std::chrono_literals;
using ZelkoTest::TestUsers;
using Outcome = Authenticator::Outcome;
using Answer = Authenticator::Answer;

namespace {

std::optional<UserFile> usersOf(const TestUsers& users)
{
    QString error;
    QStringList warnings;
    return UserFile::load(users.path(), &error, &warnings);
}

} // namespace

class TestAuthenticator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void admitsEachUserWithHisPassword_data();
    void admitsEachUserWithHisPassword();
    void admitsNobodyInParticularAsAViewer();
    void deniesWhatIsWrong_data();
    void deniesWhatIsWrong();
    void knowsNobodyWithoutUsers();
    void looksAtNothingAfterTooManyFailures();
    void doesNotCountWhoIsAdmitted();
    void doesNotLetOtherHostsPay();
    void countsTriesAtTheSameTime();

private:
    const TestUsers m_users;
    const std::string m_host = "192.0.2.7";
};

void TestAuthenticator::admitsEachUserWithHisPassword_data()
{
    QTest::addColumn<Role>("role");
    for (const Role role : ZelkoCommon::allRoles) {
        QTest::newRow(roleName(role).data()) << role;
    }
}

void TestAuthenticator::admitsEachUserWithHisPassword()
{
    QFETCH(const Role, role);
    Authenticator authenticator(usersOf(m_users));
    const auto who = TestUsers::credentials(role);
    QCOMPARE(authenticator.check(who.user, who.password, m_host), (Answer{Outcome::Admitted, role}));
}

void TestAuthenticator::admitsNobodyInParticularAsAViewer()
{
    Authenticator authenticator(usersOf(m_users));
    QCOMPARE(authenticator.check({}, {}, m_host), (Answer{Outcome::Admitted, Role::Viewer}));
}

void TestAuthenticator::deniesWhatIsWrong_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    const QString right = TestUsers::credentials(Role::Operator).password;
    QTest::newRow("a wrong password") << "operator"
                                      << "wrong";
    QTest::newRow("another user's password") << "viewer" << right;
    QTest::newRow("no password") << "operator" << QString();
    QTest::newRow("no name") << QString() << right;
    QTest::newRow("a name in capitals") << "Operator" << right;
    QTest::newRow("half a character") << "operator" << right + QChar(0xd800);
    for (int number = 0; number < 10; ++number) { // whosever hash is tried for them
        QTest::addRow("a name that is not there, %d", number) << QString::number(number) << right;
    }
}

void TestAuthenticator::deniesWhatIsWrong()
{
    QFETCH(const QString, name);
    QFETCH(const QString, password);
    Authenticator authenticator(usersOf(m_users));
    QCOMPARE(authenticator.check(name, password, m_host), Answer{Outcome::Denied});
}

void TestAuthenticator::knowsNobodyWithoutUsers()
{
    Authenticator authenticator(std::nullopt);
    const auto who = TestUsers::credentials(Role::Viewer);
    QCOMPARE(authenticator.check(who.user, who.password, m_host), Answer{Outcome::Denied});
    QCOMPARE(authenticator.check({}, {}, m_host), (Answer{Outcome::Admitted, Role::Viewer}));
}

void TestAuthenticator::looksAtNothingAfterTooManyFailures()
{
    FailureLimit::Clock::time_point now{1h};
    Authenticator::Options options;
    options.failures = {2, 10s, 100, [&now] { return now; }};
    Authenticator authenticator(usersOf(m_users), options);
    const auto who = TestUsers::credentials(Role::Operator);
    authenticator.check(who.user, "wrong", m_host);
    authenticator.check("anna", who.password, m_host);
    QCOMPARE(authenticator.check(who.user, who.password, m_host), Answer{Outcome::TooManyTries});
    QCOMPARE(authenticator.check({}, {}, m_host), (Answer{Outcome::Admitted, Role::Viewer}));
    now += 10s;
    QCOMPARE(authenticator.check(who.user, who.password, m_host).outcome, Outcome::Admitted);
}

void TestAuthenticator::doesNotCountWhoIsAdmitted()
{
    Authenticator::Options options;
    options.failures.atOnce = 1;
    options.failures.pause = 1h;
    Authenticator authenticator(usersOf(m_users), options);
    const auto who = TestUsers::credentials(Role::Operator);
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(authenticator.check(who.user, who.password, m_host).outcome, Outcome::Admitted);
    }
}

void TestAuthenticator::doesNotLetOtherHostsPay()
{
    Authenticator::Options options;
    options.failures.atOnce = 1;
    options.failures.pause = 1h;
    Authenticator authenticator(usersOf(m_users), options);
    authenticator.check("operator", "wrong", m_host);
    QCOMPARE(authenticator.check("operator", "wrong", m_host).outcome, Outcome::TooManyTries);
    const auto who = TestUsers::credentials(Role::Operator);
    QCOMPARE(authenticator.check(who.user, who.password, "192.0.2.8").outcome, Outcome::Admitted);
}

void TestAuthenticator::countsTriesAtTheSameTime()
{
    Authenticator::Options options;
    options.failures.atOnce = 3;
    options.failures.pause = 1h;
    options.turnstile = {4, 4, 100, 60s};
    Authenticator authenticator(usersOf(m_users), options);
    std::atomic<int> looked = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 10; ++i) {
        threads.emplace_back(
            [&] { looked += authenticator.check("operator", "wrong", m_host).outcome == Outcome::Denied ? 1 : 0; });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    QCOMPARE(looked.load(), 3);
}

QTEST_GUILESS_MAIN(TestAuthenticator)
#include "tst_authenticator.moc"
