#include "loglines.h"

#include <recorder/service/callrights.h>

#include <QTest>

#include <omniORB4/CORBA.h>

#include <optional>

using namespace ZelkoRecorder;

class TestCallRights : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_log.emplace(); }
    void cleanup() { m_log.reset(); }
    void allowsWhatTheRoleOfTheCallerAllows();
    void saysWhoWasRefusedWhat();
    void isNotALineForEachOfManyRefusals();
    void asksForNobodyOnceTheGateIsClosed();

private:
    const CallRights m_rights{[] { return Caller{"anna", Role::Viewer}; }};
    std::optional<ZelkoTest::LogLines> m_log;
};

void TestCallRights::allowsWhatTheRoleOfTheCallerAllows()
{
    QVERIFY(m_rights.allow(Action::Look));
    m_rights.require(Action::Look);
    QCOMPARE(m_log->lines(), QStringList());
    QVERIFY(!m_rights.allow(Action::CopyRecord));
    QVERIFY_EXCEPTION_THROWN(m_rights.require(Action::CopyRecord), CORBA::NO_PERMISSION);
}

void TestCallRights::saysWhoWasRefusedWhat()
{
    const CallRights rights([] { return Caller{"anna", Role::Viewer}; });
    rights.allow(Action::CopyRecord);
    QCOMPARE(m_log->lines(), QStringList("refused: a call of user \"anna\" (viewer) at : may not copy a record"));
}

// The rights of the servants are made of the same.
void TestCallRights::isNotALineForEachOfManyRefusals()
{
    const CallRights rights([] { return Caller(); });
    const CallRights within = rights.within(std::make_shared<CallGate>());
    for (int i = 0; i < 1000; ++i) {
        QVERIFY(!rights.allow(Action::Replay));
        QVERIFY(!within.allow(Action::Replay));
    }
    QVERIFY(!m_log->lines().isEmpty());
    QVERIFY(m_log->lines().size() < 500); // some for each period that the tries took
}

void TestCallRights::asksForNobodyOnceTheGateIsClosed()
{
    const auto gate = std::make_shared<CallGate>();
    const CallRights within = m_rights.within(gate);
    QVERIFY(within.allow(Action::Look));
    gate->close([] {}, [] {});
    QVERIFY_EXCEPTION_THROWN(within.allow(Action::Look), CORBA::BAD_INV_ORDER);
}

QTEST_APPLESS_MAIN(TestCallRights)
#include "tst_callrights.moc"
