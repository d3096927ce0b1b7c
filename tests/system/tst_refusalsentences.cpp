#include <actiontest.h>

#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/guitoserverexportcorbahandler.h>
#include <zelkobase/service/recorderservice.h>

using namespace ZelkoTest;
using QD_ZLK::IF_ZELKO_Replay_ptr;
using QD_ZLK::IF_ZELKO_Replay_var;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::Role;
using ZelkoGUI::GuiToServerExportCorbaHandler;
using Status = ZELKO_RecordData::RecordStatus;

namespace {

const QString whole = QStringLiteral("R1");
const QString notClosed = QStringLiteral("R2");
const QString withoutSamples = QStringLiteral("R3");

const QString damagedSentence = QStringLiteral("The record is damaged, and this cannot be done with it. Reset it, and "
                                               "try again; if it is refused even then, samples of it are lost.");

ZELKO_RecordData damagedRecord(const QString& id)
{
    ZELKO_RecordData record = finishedRecord(id);
    record.SetRecordStatus(Status::Damaged);
    return record;
}

using ReplayCall = std::function<CORBA::Long(IF_ZELKO_Replay_ptr, const char* device, const char* record)>;

CORBA::Long startReplay(IF_ZELKO_Replay_ptr replay, const char* device, const char* record, CORBA::Long speed)
{
    return replay->StartReplay(device, record, QD_ZLK::RATE_NOT_SET, 0, 0, speed);
}

} // namespace

// What a user reads of what a real recorder refuses.
class TestRefusalSentences : public ActionTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { openOrb(); }
    void cleanupTestCase() { closeOrb(); }
    void init();
    void cleanup() { leaveSite(); }
    void ofAnExport_data();
    void ofAnExport();
    void ofAnExportThatHasEnded();
    void ofATargetThatIsTaken();
    void ofAReplay_data();
    void ofAReplay();
    void ofADamagedRecordHelp();
    void ofARecordWithoutItsSamplesStay();

private:
    unsigned long copy(const QString& record) const
    {
        return m_site->admin().copyRecord(ActionSite::device(), record, 10'000'000, 10'500'000, QStringLiteral("copy"));
    }
    void reset(const QString& record) const
    {
        QVERIFY(m_site->click(Action::UserActionReset, {record}));
        QTRY_COMPARE_WITH_TIMEOUT(m_site->row(record).GetRecordStatus(), Status::Finished, patience);
    }

    std::unique_ptr<QTemporaryDir> m_exports;
};

void TestRefusalSentences::init()
{
    m_exports = std::make_unique<QTemporaryDir>();
    makeSite();
    QVERIFY(storeRecord(m_site->deviceFolder(), finishedRecord(whole), 4000));
    QVERIFY(storeRecord(m_site->deviceFolder(), damagedRecord(notClosed), 4000));
    QVERIFY(storeRecord(m_site->deviceFolder(), damagedRecord(withoutSamples), 100));
    QVERIFY(m_site->start({QStringLiteral("--export-folder"), m_exports->path()}));
    connectAs(Role::Operator);
}

void TestRefusalSentences::ofAnExport_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("below");
    QTest::addColumn<QString>("sentence");
    const QString elsewhere = QStringLiteral("The recorder does not export to there. Choose one of the folders that it "
                                             "has for exports, or one below them.");
    QTest::newRow("to above the folder") << whole << "/.." << elsewhere;
    QTest::newRow("to beside the folder") << whole << "-other" << elsewhere;
    QTest::newRow("of a damaged record") << notClosed << "" << damagedSentence;
}

void TestRefusalSentences::ofAnExport()
{
    QFETCH(const QString, record);
    QFETCH(const QString, below);
    GuiToServerExportCorbaHandler handler(m_site->handler());
    QCOMPARE(handler.exportRecord(ActionSite::device(), record, m_exports->path() + below), QString());
    QTEST(handler.lastErrorText(), "sentence");
    QCOMPARE(contentOf(m_exports->path()).size(), 0);
}

void TestRefusalSentences::ofAnExportThatHasEnded()
{
    GuiToServerExportCorbaHandler handler(m_site->handler());
    const QString exportId = handler.exportRecord(ActionSite::device(), whole, m_exports->path());
    QVERIFY2(!exportId.isEmpty(), qPrintable(handler.lastErrorText()));
    QTRY_VERIFY_WITH_TIMEOUT(QDir(m_exports->filePath(whole)).exists(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(!handler.cancelExport(exportId, false), patience);
    QCOMPARE(handler.lastErrorText(),
             QStringLiteral("The export does not exist any more. It has ended; look into its target."));
}

void TestRefusalSentences::ofATargetThatIsTaken()
{
    QVERIFY(QDir(m_exports->path()).mkdir(whole));
    GuiToServerExportCorbaHandler handler(m_site->handler());
    QCOMPARE(handler.exportRecord(ActionSite::device(), whole, m_exports->path()), QString());
    QCOMPARE(handler.lastErrorText(), QStringLiteral("There is something of that name already, and it was not "
                                                     "replaced. Choose another place, or move away what is there."));
}

void TestRefusalSentences::ofAReplay_data()
{
    QTest::addColumn<ReplayCall>("call");
    QTest::addColumn<QString>("sentence");
    const QString notReplaying = QStringLiteral("The record is not being replayed; it may have come to its end. Start "
                                                "the replay again.");
    QTest::newRow("a pause of none") << ReplayCall([](auto replay, auto device, auto record) {
        return replay->PauseReplay(device, record);
    }) << notReplaying;
    QTest::newRow("going on with none") << ReplayCall([](auto replay, auto device, auto record) {
        return replay->ContinueReplay(device, record);
    }) << notReplaying;
    QTest::newRow("an end of none") << ReplayCall([](auto replay, auto device, auto record) {
        return replay->StopReplay(device, record);
    }) << notReplaying;
    QTest::newRow("twice as fast") << ReplayCall([](auto replay, auto device, auto record) {
        return startReplay(replay, device, record, 200);
    }) << QStringLiteral("The recorder replays in real time only. Choose a speed of 100 percent.");
    QTest::newRow("to receivers") << ReplayCall([](auto replay, auto device, auto record) {
        return replay->StartReplayReceivers(device, record, QD_ZLK::RATE_NOT_SET, 0, 0, 100, QD_ZLK::ENDPOINT_UDP);
    }) << QStringLiteral("This recorder does not do that with any record. Use a recorder that does, or do without it.");
}

void TestRefusalSentences::ofAReplay()
{
    QFETCH(const ReplayCall, call);
    QVERIFY(m_site->handler()->service().ask([&](QD_ZLK::IF_ZLK_c_ZLK_ptr service) {
        const CORBA::String_var device = ZelkoCommon::toCorba(ActionSite::device());
        const IF_ZELKO_Replay_var replay = service->getZelkoReplayInterface(device);
        return static_cast<unsigned long>(call(replay, device, ZelkoCommon::toCorba(whole)));
    }) != 0);
    QTEST(m_site->handler()->lastErrorText(), "sentence");
}

// What the sentence recommends is what helps.
void TestRefusalSentences::ofADamagedRecordHelp()
{
    QVERIFY(copy(notClosed) != 0);
    QCOMPARE(m_site->admin().lastErrorText(), damagedSentence);
    reset(notClosed);
    QVERIFY2(copy(notClosed) == 0, qPrintable(m_site->admin().lastErrorText()));
}

void TestRefusalSentences::ofARecordWithoutItsSamplesStay()
{
    QVERIFY(copy(withoutSamples) != 0);
    reset(withoutSamples);
    QVERIFY(copy(withoutSamples) != 0);
    QCOMPARE(m_site->admin().lastErrorText(), damagedSentence);
}

QTEST_MAIN(TestRefusalSentences)
#include "tst_refusalsentences.moc"
