#include <actiontest.h>

#include <zelkobase/service/guitoserverexportcorbahandler.h>
#include <zelkobase/service/recorderservice.h>
#include <zelkobase/service/servicestatus.h>
#include <zelkobase/service/toolbarhelper.h>

#include <QElapsedTimer>
#include <QTimer>

#include <future>

using namespace ZelkoTest;
using ZelkoCommon::RecorderService;
using ZelkoCommon::Role;
using ZelkoCommon::ServiceStatus;
using ZelkoCommon::statusCode;
using ZelkoGUI::IZelkoGUIController;

namespace {

constexpr std::chrono::milliseconds shortLimit{400};
const QString first = QStringLiteral("R1");
const QString second = QStringLiteral("R2");
const QString newName = QStringLiteral("a new name");

QString textOf(unsigned long status)
{
    return ZelkoCommon::ToolbarHelper::Instance()->ErrorId2Text(status, 1);
}

} // namespace

// What a user sees of a recorder that stands still, or dies, and that all is well again when it is back.
class TestRecorderActionFaults : public ActionTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { openOrb(); }
    void cleanupTestCase() { closeOrb(); }
    void init();
    void cleanup();
    void aRecorderThatStandsStillCostsACallItsLimit();
    void aCommandWaitsForARecorderThatStandsStill();
    void theHandlersFindARecorderAgain();
    void aDeadRecorderIsSaidToBeGone();

private:
    void checkThatItWorks(const QString& id);
    void checkThatTheWindowLives();
    void killIt();
    std::future<unsigned long> askElsewhere(std::chrono::milliseconds limit) const;
};

void TestRecorderActionFaults::init()
{
    makeSite();
    for (const QString& id : {first, second}) {
        QVERIFY(storeRecord(m_site->deviceFolder(), finishedRecord(id), 4000));
    }
    QVERIFY(m_site->start());
    connectAs(Role::Operator);
}

void TestRecorderActionFaults::cleanup()
{
    m_site->recorder().send(SIGCONT);
    leaveSite();
}

void TestRecorderActionFaults::checkThatItWorks(const QString& id)
{
    QTRY_VERIFY_WITH_TIMEOUT(m_site->isReady(), patience);
    QCOMPARE(m_site->admin().requestRecordDataDetail(ActionSite::device(), id), 0UL);
    m_site->takeMessages();
    rename(*m_site, id, newName);
    QCOMPARE(m_site->takeMessages(), QStringList());
    QCOMPARE(m_site->stored(id).GetRecordName(), newName);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->row(id).GetRecordName(), newName, patience);
}

void TestRecorderActionFaults::checkThatTheWindowLives()
{
    int rounds = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] { ++rounds; });
    timer.start(1);
    QTRY_VERIFY_WITH_TIMEOUT(rounds > 20, patience);
    deleteRecords(*m_site, {first}, QMessageBox::No);
}

void TestRecorderActionFaults::killIt()
{
    m_site->recorder().kill();
    QTRY_VERIFY_WITH_TIMEOUT(!m_site->data().isConnected(ActionSite::subSystem()), patience);
}

// A question on another thread, with a limit of its own that begins as this returns.
std::future<unsigned long> TestRecorderActionFaults::askElsewhere(std::chrono::milliseconds limit) const
{
    const ZelkoCommon::ServiceAddress address{{}, QStringLiteral("127.0.0.1"), m_site->recorder().port()};
    const auto begun = std::make_shared<std::promise<void>>();
    auto answer = std::async(std::launch::async, [address, limit, begun] {
        RecorderService service([&] { return address; });
        service.setLimit(limit);
        begun->set_value();
        return service.ask([](QD_ZLK::IF_ZLK_c_ZLK_ptr entry) {
            QD_ZLK::StringSeq_var(entry->getAllDevices());
            return 0UL;
        });
    });
    begun->get_future().wait();
    return answer;
}

void TestRecorderActionFaults::aRecorderThatStandsStillCostsACallItsLimit()
{
    QCOMPARE(m_site->admin().addHistory(ActionSite::device(), second, QStringLiteral("the service is known")), 0UL);
    QVERIFY(m_site->recorder().stop());
    auto patient = askElsewhere(m_site->handler()->limit());
    m_site->handler()->setLimit(shortLimit);
    QElapsedTimer clock;
    clock.start();
    rename(*m_site, first, newName);
    QVERIFY(clock.elapsed() >= shortLimit.count());
    QVERIFY(patient.wait_for(std::chrono::seconds(0)) == std::future_status::timeout); // so it was the shorter limit
    const QString timeout = textOf(statusCode(ServiceStatus::Timeout));
    QVERIFY(!timeout.isEmpty());
    QCOMPARE(m_site->takeMessages(), QStringList{timeout});
    checkThatTheWindowLives();
    m_site->recorder().send(SIGCONT);
    QCOMPARE(patient.get(), 0UL);
    m_site->handler()->setLimit(std::chrono::seconds(60));
    QTRY_COMPARE_WITH_TIMEOUT(m_site->admin().addHistory(ActionSite::device(), second, newName), 0UL, patience);
    checkThatItWorks(second);
}

void TestRecorderActionFaults::aCommandWaitsForARecorderThatStandsStill()
{
    QVERIFY(m_site->recorder().stop());
    deleteRecords(*m_site, {first}, QMessageBox::Yes);
    checkThatTheWindowLives();
    QCOMPARE(m_site->rows(), (QStringList{first, second})); // nobody but the recorder takes rows away
    m_site->recorder().send(SIGCONT);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->rows(), QStringList{second}, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->storedIds(), QStringList{second}, patience);
}

void TestRecorderActionFaults::theHandlersFindARecorderAgain()
{
    const ZelkoGUI::GuiToServerExportCorbaHandler exports(m_site->handler());
    checkThatItWorks(first);
    QVERIFY(exports.connected());
    killIt();
    QVERIFY(m_site->start());
    checkThatItWorks(second);
    QVERIFY(exports.connected());
    QCOMPARE(m_site->row(first).GetRecordName(), newName);
}

void TestRecorderActionFaults::aDeadRecorderIsSaidToBeGone()
{
    checkThatItWorks(first);
    killIt();
    const unsigned long status = m_site->admin().SetRecordComment(ActionSite::device(), first, QStringLiteral("late"));
    QCOMPARE(status, statusCode(ServiceStatus::NotReachable));
    QVERIFY(m_site->admin().lastErrorText().startsWith(textOf(status)));
    QVERIFY(!m_site->click(IZelkoGUIController::UserActionRename, {first})); // there are no rows to act on
    QVERIFY(m_site->start());
    checkThatItWorks(second);
    QCOMPARE(m_site->stored(first).GetRecordName(), newName);
}

QTEST_MAIN(TestRecorderActionFaults)
#include "tst_recorderactionfaults.moc"
