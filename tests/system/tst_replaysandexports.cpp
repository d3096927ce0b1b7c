#include <actiontest.h>
#include <samplebytes.h>

#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/guitoserverexportcorbahandler.h>
#include <zelkobase/service/recorderservice.h>
#include <zelkobase/service/servicestatus.h>

using namespace ZelkoTest;
using QD_ZLK::IF_ZELKO_Replay_ptr;
using QD_ZLK::IF_ZELKO_Replay_var;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::Role;
using ZelkoCommon::ServiceStatus;
using ZelkoCommon::statusCode;
using ZelkoConsole::DialogAnswer;
using ZelkoGUI::GuiToServerExportCorbaHandler;
using Status = ZELKO_RecordData::RecordStatus;

namespace {

const QString id = QStringLiteral("R1");
constexpr qint64 begin = 10'000'000;
constexpr qint64 end = 3'610'000'000; // an hour later, so that no replay comes to its end
constexpr qsizetype size = 400'000;

using ReplayCall = std::function<CORBA::Long(IF_ZELKO_Replay_ptr, const char* device, const char* record)>;

CORBA::Long startReplay(IF_ZELKO_Replay_ptr replay, const char* device, const char* record)
{
    return replay->StartReplay(device, record, QD_ZLK::RATE_NOT_SET, 0, 0, 100);
}

CORBA::Long pauseReplay(IF_ZELKO_Replay_ptr replay, const char* device, const char* record)
{
    return replay->PauseReplay(device, record);
}

CORBA::Long continueReplay(IF_ZELKO_Replay_ptr replay, const char* device, const char* record)
{
    return replay->ContinueReplay(device, record);
}

CORBA::Long stopReplay(IF_ZELKO_Replay_ptr replay, const char* device, const char* record)
{
    return replay->StopReplay(device, record);
}

} // namespace

// What a client has a real recorder play and write out.
class TestReplaysAndExports : public ActionTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { openOrb(); }
    void cleanupTestCase() { closeOrb(); }
    void init();
    void cleanup() { leaveSite(); }
    void replaysInRealTime();
    void keepsARecordThatIsReplayed();
    void replaysNothingForAViewer();
    void exportsARecord();
    void exportsOnlyWhereItMay_data();
    void exportsOnlyWhereItMay();
    void saysWhyThereIsNothingToCancel();
    void exportsNothingForAViewer();

private:
    ServiceStatus ask(const ReplayCall& call) const
    {
        return static_cast<ServiceStatus>(m_site->handler()->service().ask([&](QD_ZLK::IF_ZLK_c_ZLK_ptr service) {
            const CORBA::String_var device = ZelkoCommon::toCorba(ActionSite::device());
            const CORBA::String_var record = ZelkoCommon::toCorba(id);
            const IF_ZELKO_Replay_var replay = service->getZelkoReplayInterface(device);
            return static_cast<unsigned long>(call(replay, device, record));
        }));
    }
    Status status() const { return m_site->row(id).GetRecordStatus(); }
    static qint64 position()
    {
        return ActionSite::values().find<Value<qint64>>("/Replay/CurrentReplayPosition")->GetValue();
    }
    // The position is shown anew every 100 ms while it moves.
    static bool standsStill()
    {
        const qint64 before = position();
        QTest::qWait(300);
        return position() == before;
    }
    QString exported(const QString& record) const { return m_exports->filePath(record); }

    std::unique_ptr<QTemporaryDir> m_exports;
};

void TestReplaysAndExports::init()
{
    m_exports = std::make_unique<QTemporaryDir>();
    makeSite();
    ZELKO_RecordData record = finishedRecord(id);
    record.SetStopTime(end);
    record.SetSize(size);
    record.SetStopPosition(size);
    record.SetIndexEntry({indexEntry(begin, 0), indexEntry(end, size)});
    QVERIFY(storeSamples(m_site->deviceFolder(), record, sampleBytes(size)));
    QVERIFY(m_site->start({QStringLiteral("--export-folder"), m_exports->path()}));
}

void TestReplaysAndExports::replaysInRealTime()
{
    connectAs(Role::Operator);
    QCOMPARE(position(), 0);
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(ask(startReplay), ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(status(), Status::Replaying, patience);
    QTRY_VERIFY_WITH_TIMEOUT(position() > begin, patience);
    const qint64 early = position();
    QTRY_VERIFY_WITH_TIMEOUT(position() > early, patience);
    QVERIFY((position() - begin) / 1000 <= clock.elapsed() + 1); // no faster than the clock

    QCOMPARE(ask(pauseReplay), ServiceStatus::None);
    QCOMPARE(ask(pauseReplay), ServiceStatus::None);
    QTRY_VERIFY_WITH_TIMEOUT(standsStill(), patience);
    const qint64 paused = position();
    QCOMPARE(ask(continueReplay), ServiceStatus::None);
    QTRY_VERIFY_WITH_TIMEOUT(position() > paused, patience);

    QCOMPARE(ask(stopReplay), ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(status(), Status::Finished, patience);
    QTRY_COMPARE_WITH_TIMEOUT(position(), 0, patience);
    QCOMPARE(ask(stopReplay), ServiceStatus::NotReplaying);
    QCOMPARE(m_site->stored(id).GetRecordStatus(), Status::Finished);
}

void TestReplaysAndExports::keepsARecordThatIsReplayed()
{
    connectAs(Role::Operator);
    const auto deleteIt = [this] {
        const DialogAnswer yes(answers::click(QMessageBox::Yes));
        QVERIFY(m_site->click(ActionSite::Controller::UserActionDelete, {id}));
        QVERIFY(yes.wasGiven());
    };
    QCOMPARE(ask(startReplay), ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(status(), Status::Replaying, patience);
    deleteIt();
    QCOMPARE(m_site->admin().addHistory(ActionSite::device(), id, QStringLiteral("still here")), 0UL);
    QTRY_VERIFY_WITH_TIMEOUT(!m_site->row(id).GetHistoryEntry().isEmpty(), patience);
    QCOMPARE(status(), Status::Replaying);
    QVERIFY(m_site->click(ActionSite::Controller::UserActionReset, {id})); // ends the replay
    QTRY_COMPARE_WITH_TIMEOUT(status(), Status::Finished, patience);
    deleteIt();
    QTRY_COMPARE_WITH_TIMEOUT(m_site->storedIds(), QStringList(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->rows(), QStringList(), patience);
}

void TestReplaysAndExports::replaysNothingForAViewer()
{
    connectAs(Role::Viewer);
    for (const ReplayCall& call :
         {ReplayCall(startReplay), ReplayCall(pauseReplay), ReplayCall(continueReplay), ReplayCall(stopReplay)}) {
        QCOMPARE(ask(call), ServiceStatus::NotAllowed);
    }
    QCOMPARE(position(), 0);
    QCOMPARE(status(), Status::Finished);
}

void TestReplaysAndExports::exportsARecord()
{
    connectAs(Role::Operator);
    GuiToServerExportCorbaHandler handler(m_site->handler());
    const QString exportId = handler.exportRecord(ActionSite::device(), id, m_exports->path());
    QVERIFY2(exportId.startsWith(ActionSite::device() + QLatin1Char('@') + id), qPrintable(handler.lastErrorText()));
    QCOMPARE(handler.lastError(), 0UL);
    QTRY_VERIFY_WITH_TIMEOUT(QDir(exported(id)).exists(), patience); // appears whole
    QCOMPARE(contentOf(exported(id)), contentOf(m_site->recordFolder(id)));
    QCOMPARE(handler.exportRecordEx(ActionSite::device(), id, m_exports->path()), QString()); // replaces nothing
    QCOMPARE(handler.lastError(), statusCode(ServiceStatus::TargetExists));
}

void TestReplaysAndExports::exportsOnlyWhereItMay_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("below");
    QTest::addColumn<ServiceStatus>("status");
    const QString device = ActionSite::device();
    QTest::newRow("an unknown record") << device << "R9"
                                       << "" << ServiceStatus::NoSuchRecord;
    QTest::newRow("an unknown device") << "Recorder9" << id << "" << ServiceStatus::NoSuchDevice;
    QTest::newRow("above the folder") << device << id << "/.." << ServiceStatus::TargetNotAllowed;
    QTest::newRow("beside the folder") << device << id << "-other" << ServiceStatus::TargetNotAllowed;
}

void TestReplaysAndExports::exportsOnlyWhereItMay()
{
    QFETCH(const QString, device);
    QFETCH(const QString, record);
    QFETCH(const QString, below);
    QFETCH(const ServiceStatus, status);
    connectAs(Role::Operator);
    GuiToServerExportCorbaHandler handler(m_site->handler());
    QCOMPARE(handler.exportRecord(device, record, m_exports->path() + below), QString());
    QCOMPARE(static_cast<ServiceStatus>(handler.lastError()), status);
    QVERIFY(!handler.lastErrorText().isEmpty());
    QCOMPARE(contentOf(m_exports->path()).size(), 0);
}

void TestReplaysAndExports::saysWhyThereIsNothingToCancel()
{
    connectAs(Role::Operator);
    GuiToServerExportCorbaHandler handler(m_site->handler());
    QVERIFY(!handler.cancelExport(QStringLiteral("Recorder1@R1@/nowhere@IQ16"), true));
    QCOMPARE(handler.lastError(), statusCode(ServiceStatus::NoSuchExport));
    QCOMPARE(handler.lastErrorText(), ZelkoCommon::serviceStatusText(statusCode(ServiceStatus::NoSuchExport)));
}

void TestReplaysAndExports::exportsNothingForAViewer()
{
    connectAs(Role::Viewer);
    GuiToServerExportCorbaHandler handler(m_site->handler());
    QCOMPARE(handler.exportRecord(ActionSite::device(), id, m_exports->path()), QString());
    QCOMPARE(handler.lastError(), statusCode(ServiceStatus::NotAllowed));
    QVERIFY(!handler.lastErrorText().isEmpty());
    QCOMPARE(contentOf(m_exports->path()).size(), 0);
}

QTEST_MAIN(TestReplaysAndExports)
#include "tst_replaysandexports.moc"
