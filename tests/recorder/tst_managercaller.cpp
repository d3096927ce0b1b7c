#include <recorder/service/managercaller.h>

#include <freeport.h>
#include <patience.h>
#include <publishedmanager.h>

#include <QTest>

#include <semaphore>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using QD_ZLK::IF_ZLK_c_ChanMan;
using Manager = QD_ZLK::IF_ZLK_c_ChanMan_ptr;

namespace {

constexpr std::chrono::milliseconds longLimit{60'000}; // where none is to be reached

bool agree(Manager)
{
    return true;
}

bool start(Manager manager)
{
    manager->startDataFlow("1");
    return true;
}

bool askWhetherAvailable(Manager manager)
{
    return manager->isAvailableForRecord("1", QD_ZLK::StringSeq());
}

bool raise(const QString& exception)
{
    if (exception == "timeout") {
        throw CORBA::TIMEOUT();
    }
    if (exception == "transient") {
        throw CORBA::TRANSIENT();
    }
    if (exception == "comm failure") {
        throw CORBA::COMM_FAILURE();
    }
    if (exception == "object not exist") {
        throw CORBA::OBJECT_NOT_EXIST();
    }
    if (exception == "bad operation") {
        throw CORBA::BAD_OPERATION();
    }
    if (exception == "refusal") {
        throw IF_ZLK_c_ChanMan::exChanMan(IF_ZLK_c_ChanMan::CHANMAN_BUSY, "busy today");
    }
    return exception == "agrees";
}

} // namespace

class TestManagerCaller : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void makesItsCallsInTheirOrder();
    void tellsHowACallEnded_data();
    void tellsHowACallEnded();
    void keepsNobodyWaiting();
    void givesACallUpAfterItsLimit();
    void knowsWhenAManagerIsGone_data();
    void knowsWhenAManagerIsGone();
    void asksForASignOfLife();
    void asksForNoSignOfLifeWhileItCalls();
    void losesAManagerWhoseProcessHasEnded();
    void callsNobodyThatIsLost();
    void callsAnotherManagerFromThenOn();
    void forgetsOutcomesWhenItGoes();

private:
    void begin(std::chrono::milliseconds limit = longLimit)
    {
        m_caller = std::make_unique<ManagerCaller>(m_manager->reference(), limit,
                                                   [this](const QString& why) { m_log << "lost: " + why; });
    }
    ManagerCaller::Then note(const QString& name)
    {
        return [this, name](const ManagerCaller::Outcome& outcome) {
            m_log << name + (outcome.done ? " done" : ": " + outcome.why);
        };
    }
    // What has happened when everything that was asked for until now has.
    QStringList settledLog()
    {
        bool isSettled = false;
        m_caller->call(agree, [&](const ManagerCaller::Outcome&) { isSettled = true; });
        [&] { QTRY_VERIFY_WITH_TIMEOUT(isSettled, patience); }();
        return m_log;
    }

    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    std::unique_ptr<PublishedManager> m_manager;
    QStringList m_log;
    std::unique_ptr<ManagerCaller> m_caller;
};

void TestManagerCaller::init()
{
    m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
    m_manager = std::make_unique<PublishedManager>(*m_orb);
    m_log.clear();
    begin();
}

void TestManagerCaller::cleanup()
{
    m_manager->manager().release();
    m_caller.reset();
    m_orb.reset();
}

void TestManagerCaller::makesItsCallsInTheirOrder()
{
    m_caller->call(start, note("first"));
    m_caller->call(askWhetherAvailable, nullptr);
    m_caller->call(start, note("third"));
    QCOMPARE(settledLog(), QStringList({"first done", "third done"}));
    QCOMPARE(m_manager->manager().calls(), QStringList({"start of old", "available ?", "start of old"}));
    QVERIFY(!m_caller->isBusy());
}

void TestManagerCaller::tellsHowACallEnded_data()
{
    QTest::addColumn<QString>("ending");
    QTest::addColumn<QString>("told");
    QTest::newRow("the manager agrees") << "agrees"
                                        << "call done";
    QTest::newRow("it declines") << "declines"
                                 << "call: the channel manager declined";
    QTest::newRow("it refuses") << "refusal"
                                << "call: busy today";
}

void TestManagerCaller::tellsHowACallEnded()
{
    QFETCH(const QString, ending);
    QFETCH(const QString, told);
    m_caller->call([ending](Manager) { return raise(ending); }, note("call"));
    QCOMPARE(settledLog(), QStringList(told));
}

void TestManagerCaller::keepsNobodyWaiting()
{
    m_manager->manager().answers.hangs = true;
    m_caller->call(askWhetherAvailable, note("call"));
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->manager().calls().size(), 1, patience);
    QVERIFY(m_caller->isBusy());
    QCOMPARE(m_log, QStringList());
    m_manager->manager().release();
    QCOMPARE(settledLog(), QStringList("call done"));
}

void TestManagerCaller::givesACallUpAfterItsLimit()
{
    begin(std::chrono::milliseconds(100));
    m_manager->manager().answers.hangs = true;
    m_caller->call(askWhetherAvailable, note("call"));
    QTRY_COMPARE_WITH_TIMEOUT(m_log.size(), 1, patience);
    QVERIFY2(m_log.first().startsWith("call: "), qPrintable(m_log.first()));
}

void TestManagerCaller::knowsWhenAManagerIsGone_data()
{
    QTest::addColumn<QStringList>("endings");
    QTest::addColumn<int>("losses");
    QTest::newRow("a call without an answer") << QStringList{"timeout"} << 0;
    QTest::newRow("two of them in a row") << QStringList{"timeout", "timeout"} << 1;
    QTest::newRow("one of each kind") << QStringList{"transient", "timeout"} << 1;
    QTest::newRow("an answer in between") << QStringList{"timeout", "agrees", "timeout"} << 0;
    QTest::newRow("a refusal in between") << QStringList{"timeout", "refusal", "timeout"} << 0;
    QTest::newRow("an error in between") << QStringList{"timeout", "bad operation", "timeout"} << 0;
    QTest::newRow("errors only") << QStringList{"bad operation", "bad operation", "bad operation"} << 0;
    QTest::newRow("its connection broke") << QStringList{"comm failure"} << 1;
    QTest::newRow("its object is gone") << QStringList{"object not exist"} << 1;
    QTest::newRow("told of once only") << QStringList{"comm failure", "comm failure", "timeout", "timeout"} << 1;
}

void TestManagerCaller::knowsWhenAManagerIsGone()
{
    QFETCH(const QStringList, endings);
    for (const QString& ending : endings) {
        m_caller->call([ending](Manager) { return raise(ending); }, nullptr);
    }
    QTEST(int(settledLog().filter("lost: ").size()), "losses");
}

void TestManagerCaller::asksForASignOfLife()
{
    m_caller->ping();
    QCOMPARE(settledLog(), QStringList());
    m_manager->vanish();
    m_caller->ping();
    QCOMPARE(settledLog().size(), 1);
    QVERIFY2(m_log.first().startsWith("lost: "), qPrintable(m_log.first()));
}

void TestManagerCaller::asksForNoSignOfLifeWhileItCalls()
{
    m_manager->vanish();
    std::binary_semaphore goOn(0);
    m_caller->call(
        [&](Manager) {
            goOn.acquire();
            return true;
        },
        note("call"));
    m_caller->ping();
    m_caller->ping();
    goOn.release();
    QCOMPARE(settledLog(), QStringList("call done"));
}

void TestManagerCaller::losesAManagerWhoseProcessHasEnded()
{
    const auto nobody = m_manager->reference(freePort());
    m_caller->setManager(nobody);
    m_caller->call(start, note("call"));
    QCOMPARE(settledLog().filter("lost: ").size(), 0); // one who does not listen may be about to
    m_caller->ping();
    m_caller->call(start, note("call"));
    m_caller->call(start, note("call"));
    QCOMPARE(settledLog().filter("lost: ").size(), 1);
}

void TestManagerCaller::callsNobodyThatIsLost()
{
    m_caller->call([](Manager) { return raise("comm failure"); }, nullptr);
    m_caller->call(start, note("call"));
    QCOMPARE(settledLog().last(), QStringLiteral("call: the channel manager is gone"));
    QCOMPARE(m_manager->manager().calls(), QStringList());
}

void TestManagerCaller::callsAnotherManagerFromThenOn()
{
    const PublishedManager other(*m_orb, "Other");
    m_caller->call(start, nullptr);
    m_caller->call([](Manager) { return raise("timeout"); }, nullptr);
    m_caller->setManager(other.reference());
    m_caller->call([](Manager) { return raise("timeout"); }, nullptr); // the first one of this manager
    m_caller->call(start, note("other"));
    QCOMPARE(settledLog(), QStringList("other done"));
    QCOMPARE(m_manager->manager().calls(), QStringList("start of old"));
    QCOMPARE(other.manager().calls(), QStringList("start of old"));
}

void TestManagerCaller::forgetsOutcomesWhenItGoes()
{
    m_caller->call(agree, note("call"));
    m_caller->call(agree, note("call"));
    m_caller.reset();
    QCoreApplication::processEvents();
    QCOMPARE(m_log, QStringList());
}

QTEST_GUILESS_MAIN(TestManagerCaller)
#include "tst_managercaller.moc"
