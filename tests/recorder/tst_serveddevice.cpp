#include <recorder/served/servedrecorder.h>

#include <filesizelimit.h>
#include <loglines.h>
#include <patience.h>
#include <recordervalues.h>
#include <storedrecord.h>

#include <observerbase/iobserver.h>
#include <valuecore/itreelistener.h>

#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;
using Status = ZELKO_RecordData::RecordStatus;

namespace {

// Writes down status and size of the only record of a map each time the map tells of a change.
class OneRecordLog : public IObserver
{
public:
    explicit OneRecordLog(zelko::recordmap::RecordItemMap& map)
        : m_map(map)
    {
        m_map.AddObserver(this);
    }
    ~OneRecordLog() override { m_map.DeleteObserver(this); }

    void Update(Observable*, TChangeCode) override
    {
        if (m_map.Size() == 1) {
            const auto& record = *m_map.data().begin()->second.GetRecordData();
            log.append({static_cast<int>(record.GetRecordStatus()), record.GetSize()});
        }
    }

    QVector<std::pair<int, quint64>> log;

private:
    zelko::recordmap::RecordItemMap& m_map;
};

class InsertionLog : public ITreeListener
{
public:
    void ItemInserted(TreeItem& item) override { paths.append(item.GetPathName()); }
    void ItemRemoving(TreeItem&) override {}
    QStringList paths;
};

} // namespace

class TestServedDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void putsItsValuesOnTheTreeInOrder();
    void refusesADeviceTwice();
    void refusesAFolderThatCannotBe();
    void showsTheRecordsOfItsStore();
    void letsNobodyRecordBeforeItHasLookedAtItsStore();
    void showsARecordingGrowAndEnd();
    void recordsSourcesOneAfterTheOther();
    void passesOverASourceThatIsNone();
    void recordsASourceOnceIfToldSo();
    void recordsASourceAgainThatWasNotRecordedToItsEnd();
    void recordsSeveralDevicesSideBySide();
    void closesTheRecordingWhenItEnds();
    void dropsARecordWhoseFolderWasRemoved();
    void showsARecordThatWasCopiedIn();
    void foldsABurstOfRemovals();
    void dropsARecordingWhoseFolderWasRemoved();
    void showsARecordingAsDamagedUntilTheDiskTakesItsEnd();
    void deletesWhatAClientAsks();
    void deletesNothingThatIsProtectedOrInUse();
    void logsOneLineForAWholeListOfUnknownRecords();
    void synchronizesWithTheDisk();
    void synchronizesOneRecord();
    void putsARecordToRest();
    void stopsARecordingThatIsToBeIdle();
    void changesPreparedRecordsForLoadTests();

private:
    DevicePlan plan() const
    {
        DevicePlan plan;
        plan.folder = m_folder->filePath(QStringLiteral("D1"));
        plan.pace.indexInterval = std::chrono::milliseconds(100);
        plan.pace.stepInterval = std::chrono::milliseconds(0);
        return plan;
    }
    void serve(const DevicePlan& plan, const QString& device = QStringLiteral("D1"))
    {
        QString error;
        QVERIFY2(m_recorder->addDevice({device, QStringLiteral("127.0.0.1"), QStringLiteral("1.2")}, plan, &error),
                 qPrintable(error));
    }
    bool store(const ZELKO_RecordData& record) const { return storeRecord(plan().folder, record, 4000); }
    void serveStored()
    {
        serve(plan());
        QTRY_VERIFY_WITH_TIMEOUT(values().isLoaded(), patience);
    }
    RecorderValues values(const QString& device = QStringLiteral("D1")) const
    {
        return {m_recorder->tree(), QString(), device};
    }
    // The recorder started anew on its store, with short sources of these names.
    void restart(RecordingThread::Repeat repeat, const QStringList& names)
    {
        DevicePlan recording = plan();
        recording.pace.speed = 0;
        recording.repeat = repeat;
        for (const QString& name : names) {
            recording.sources.append(QStringLiteral("generator:noise,seconds=0.1,name=") + name);
        }
        m_recorder = std::make_unique<ServedRecorder>();
        serve(recording);
    }
    QStringList namesAtRest() const
    {
        QStringList names;
        for (const QString& recordID : values().ids()) {
            const auto record = values().record(recordID);
            if (record->GetRecordStatus() == Status::Finished) {
                names.append(record->GetRecordName());
            }
        }
        names.sort();
        return names;
    }
    static QString id(int number) { return QStringLiteral("R%1").arg(number); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ServedRecorder> m_recorder;
};

void TestServedDevice::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<ServedRecorder>();
}

void TestServedDevice::cleanup()
{
    m_recorder.reset();
}

void TestServedDevice::putsItsValuesOnTheTreeInOrder()
{
    InsertionLog log;
    m_recorder->tree().SetListener(&log);
    serve(plan());
    m_recorder->tree().SetListener(nullptr);
    QStringList records = log.paths.filter(QStringLiteral("/Records/"));
    QCOMPARE(records, (QStringList{QStringLiteral("/ZELKO/Device/D1/Records/LoadCount"),
                                   QStringLiteral("/ZELKO/Device/D1/Records/Map"),
                                   QStringLiteral("/ZELKO/Device/D1/Records/LoadedCompletly")}));
    const RecorderValues device = values();
    QVERIFY(device.find<Value<bool>>("/ZelkoAvailable")->GetValue());
    QCOMPARE(device.find<Value<QString>>("/Admin/IpAddress")->GetValue(), QStringLiteral("127.0.0.1"));
    QCOMPARE(device.find<ValueSelection>("/Admin/DeviceType")->GetCurrentKey(), 1);
    QVERIFY(!device.find<Value<bool>>("/Admin/SupportsXGInterface")->GetValue());
    QCOMPARE(device.find<Value<QString>>("/Status/Version/FirmwareVersion")->GetValue(), QStringLiteral("1.2"));
    QVERIFY(device.command<Value<bool>>("Synchronize"));
    QVERIFY(device.command<Value<bool>>("Extended")->GetValue());
    QCOMPARE(device.command<Value<QString>>("IpAddress")->GetValue(), QStringLiteral("127.0.0.1"));
    for (const char* name : {"SyncOneRecord", "DeleteRecordingList", "SetRecordIdle"}) {
        QVERIFY2(device.command<Value<QString>>(name), name);
    }
}

void TestServedDevice::refusesADeviceTwice()
{
    serve(plan());
    QString error;
    QVERIFY(!m_recorder->addDevice({QStringLiteral("D1"), {}, {}}, plan(), &error));
    QVERIFY(error.contains(QLatin1String("D1")));
}

void TestServedDevice::refusesAFolderThatCannotBe()
{
    QVERIFY(writeBytes(m_folder->filePath(QStringLiteral("D1")), "x"));
    QString error;
    QVERIFY(!m_recorder->addDevice({QStringLiteral("D1"), {}, {}}, plan(), &error));
    QVERIFY(!error.isEmpty());
}

void TestServedDevice::showsTheRecordsOfItsStore()
{
    QVERIFY(store(finishedRecord(id(1))));
    QVERIFY(store(unfinishedRecord(id(2))));
    serveStored();
    QCOMPARE(values().loadCount()->GetValue(), 2);
    QCOMPARE(values().ids(), (QStringList{id(1), id(2)}));
    QCOMPARE(values().record(id(2))->GetRecordStatus(), Status::Finished);
}

// What somebody began in an earlier run is gone by then: what is there later is of this run.
void TestServedDevice::letsNobodyRecordBeforeItHasLookedAtItsStore()
{
    const QString leftover = plan().folder + QStringLiteral("/.new-R9");
    QVERIFY(QDir().mkpath(leftover));
    serve(plan());
    ServedDevice& device = *m_recorder->device(QStringLiteral("D1"));
    QStringList found;
    const auto look = [&] { found << (QFileInfo::exists(leftover) ? "leftover" : "nothing"); };
    device.whenReady(&device, look);
    QVERIFY(found.isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(found, QStringList{"nothing"}, 30'000);
    device.whenReady(&device, look);
    QCOMPARE(found.size(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(found, QStringList({"nothing", "nothing"}), 30'000);
}

void TestServedDevice::showsARecordingGrowAndEnd()
{
    DevicePlan recording = plan();
    recording.sources = {QStringLiteral("generator:carrier,rate=10000,seconds=0.25")};
    serve(recording);
    OneRecordLog log(*values().map());
    QTRY_VERIFY_WITH_TIMEOUT(!log.log.isEmpty() && log.log.last().first == 5, patience);
    QCOMPARE(log.log, (QVector<std::pair<int, quint64>>{{2, 0}, {2, 4000}, {2, 8000}, {5, 10'000}}));
    const auto record = values().map()->data().begin()->second.GetRecordData();
    QVERIFY(record->GetFinished() && record->GetDeletable());
    QCOMPARE(record->GetStopTime() - record->GetStartTime(), quint64{250'000});
    QCOMPARE(record->GetIndexEntry().size(), 4);
    QCOMPARE(QFileInfo(plan().folder + QStringLiteral("/%1/%1.dat").arg(record->GetRecordID())).size(), qint64{10'000});
}

void TestServedDevice::recordsSourcesOneAfterTheOther()
{
    DevicePlan recording = plan();
    recording.pace.speed = 0;
    recording.sources = {QStringLiteral("generator:carrier,seconds=0.1,name=First"),
                         QStringLiteral("generator:noise,seconds=0.1,name=Second")};
    serve(recording);
    QTRY_COMPARE_WITH_TIMEOUT(values().map()->Size(), std::uint64_t{2}, patience);
    QStringList names;
    for (const QString& recordID : values().ids()) { // IDs are in the order of time
        names.append(values().record(recordID)->GetRecordName());
    }
    QCOMPARE(names, (QStringList{QStringLiteral("First"), QStringLiteral("Second")}));
}

void TestServedDevice::passesOverASourceThatIsNone()
{
    DevicePlan recording = plan();
    recording.pace.speed = 0;
    recording.sources = {QStringLiteral("generator:siren"), QStringLiteral("generator:noise,seconds=0.1,name=Second")};
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot record .*siren")));
    serve(recording);
    QTRY_COMPARE_WITH_TIMEOUT(values().map()->Size(), std::uint64_t{1}, patience);
    QCOMPARE(values().record(values().ids().first())->GetRecordName(), QStringLiteral("Second"));
}

void TestServedDevice::recordsASourceOnceIfToldSo()
{
    using Repeat = RecordingThread::Repeat;
    restart(Repeat::Unfinished, {"A", "A", "B"});
    QTRY_COMPARE_WITH_TIMEOUT(namesAtRest(), (QStringList{"A", "B"}), patience);
    restart(Repeat::Unfinished, {"A", "B", "C"});
    QTRY_COMPARE_WITH_TIMEOUT(namesAtRest(), (QStringList{"A", "B", "C"}), patience);
    restart(Repeat::Everything, {"A", "D"});
    QTRY_COMPARE_WITH_TIMEOUT(namesAtRest(), (QStringList{"A", "A", "B", "C", "D"}), patience);
    QCOMPARE(DeviceStore(plan().folder).remove(values().ids()).size(), 5);
    restart(Repeat::Unfinished, {"A", "D", "E"});
    QTRY_COMPARE_WITH_TIMEOUT(namesAtRest(), QStringList{"E"}, patience);
}

void TestServedDevice::recordsASourceAgainThatWasNotRecordedToItsEnd()
{
    DevicePlan recording = plan();
    recording.repeat = RecordingThread::Repeat::Unfinished;
    recording.sources = {QStringLiteral("generator:noise,rate=10000,seconds=80000,name=Long")};
    serve(recording);
    QTRY_COMPARE_WITH_TIMEOUT(values().map()->Size(), std::uint64_t{1}, patience);
    values().command<Value<QString>>("SetRecordIdle")->SetValue(values().ids().first(), nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(namesAtRest(), QStringList{"Long"}, patience);
    for (int records = 2; records <= 3; ++records) { // it was stopped, and then interrupted
        m_recorder = std::make_unique<ServedRecorder>();
        serve(recording);
        QTRY_COMPARE_WITH_TIMEOUT(values().map()->Size(), static_cast<std::uint64_t>(records), patience);
    }
}

void TestServedDevice::recordsSeveralDevicesSideBySide()
{
    for (const QString& device : {QStringLiteral("D1"), QStringLiteral("D2"), QStringLiteral("D3")}) {
        DevicePlan recording = plan();
        recording.folder = m_folder->filePath(device);
        recording.sources = {QStringLiteral("generator:fm,rate=10000")};
        serve(recording, device);
    }
    const auto grows = [this](const QString& device) {
        const RecorderValues of = values(device);
        return of.map()->Size() == 1 && of.record(of.ids().first())->GetSize() > 0 &&
               of.record(of.ids().first())->GetRecordStatus() == Status::Recording;
    };
    QTRY_VERIFY_WITH_TIMEOUT(grows(QStringLiteral("D1")) && grows(QStringLiteral("D2")) && grows(QStringLiteral("D3")),
                             patience);
}

void TestServedDevice::closesTheRecordingWhenItEnds()
{
    DevicePlan recording = plan();
    recording.sources = {QStringLiteral("generator:fm,rate=10000")};
    serve(recording);
    QTRY_COMPARE_WITH_TIMEOUT(values().map()->Size(), std::uint64_t{1}, patience);
    const QString recordID = values().ids().first();
    m_recorder->close();
    QString error;
    const RecordPointer record = DeviceStore(plan().folder).read(recordID, &error);
    QVERIFY2(record, qPrintable(error));
    QCOMPARE(record->GetRecordStatus(), Status::Finished);
}

void TestServedDevice::dropsARecordWhoseFolderWasRemoved()
{
    QVERIFY(store(finishedRecord(id(1))));
    QVERIFY(store(finishedRecord(id(2))));
    serveStored();
    QVERIFY(QDir(plan().folder + QLatin1Char('/') + id(1)).removeRecursively());
    QTRY_COMPARE_WITH_TIMEOUT(values().ids(), QStringList{id(2)}, patience);
}

void TestServedDevice::showsARecordThatWasCopiedIn()
{
    serveStored();
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(id(1)), 4000));
    QVERIFY(QDir().rename(m_folder->filePath(id(1)), plan().folder + QLatin1Char('/') + id(1)));
    QTRY_COMPARE_WITH_TIMEOUT(values().ids(), QStringList{id(1)}, patience);
}

void TestServedDevice::foldsABurstOfRemovals()
{
    constexpr int count = 200;
    for (int i = 0; i < count; ++i) {
        QVERIFY(store(finishedRecord(id(i))));
    }
    serveStored();
    QCOMPARE(values().map()->Size(), std::uint64_t{count});
    for (int i = 1; i < count; ++i) {
        QVERIFY(QDir(plan().folder + QLatin1Char('/') + id(i)).removeRecursively());
    }
    QTRY_COMPARE_WITH_TIMEOUT(values().ids(), QStringList{id(0)}, patience);
}

void TestServedDevice::dropsARecordingWhoseFolderWasRemoved()
{
    DevicePlan recording = plan();
    recording.sources = {QStringLiteral("generator:fm,rate=10000")};
    serve(recording);
    QTRY_COMPARE_WITH_TIMEOUT(values().map()->Size(), std::uint64_t{1}, patience);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("failed")));
    QVERIFY(QDir(plan().folder + QLatin1Char('/') + values().ids().first()).removeRecursively());
    QTRY_VERIFY_WITH_TIMEOUT(values().map()->Empty(), patience);
}

void TestServedDevice::showsARecordingAsDamagedUntilTheDiskTakesItsEnd()
{
    DevicePlan recording = plan();
    recording.sources = {QStringLiteral("generator:fm,rate=10000")};
    serve(recording);
    OneRecordLog log(*values().map());
    QTRY_VERIFY_WITH_TIMEOUT(log.log.size() > 2, patience);
    const QString recordID = values().ids().first();
    {
        const FileSizeLimit full(100);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("recording .* failed: the disk")));
        QTRY_COMPARE_WITH_TIMEOUT(log.log.last().first, 8, patience);
    }
    const auto durable = log.log.last();
    QCOMPARE(log.log.at(log.log.size() - 2), std::pair(2, durable.second));
    auto* const idle = values().command<Value<QString>>("SetRecordIdle");
    idle->SetValue(recordID, nullptr);
    const auto isAtRest = [&] {
        idle->HasChanged(TChangeCode::ValueChanged, nullptr); // again: it may have come before the recording ended
        return log.log.last() == std::pair(5, durable.second);
    };
    QTRY_VERIFY_WITH_TIMEOUT(isAtRest(), patience);
}

void TestServedDevice::deletesWhatAClientAsks()
{
    for (int i = 1; i <= 3; ++i) {
        QVERIFY(store(finishedRecord(id(i))));
    }
    serveStored();
    QVERIFY(values().command<Value<QString>>("DeleteRecordingList")->SetValue(QStringLiteral("R1@R3"), nullptr));
    QTRY_COMPARE_WITH_TIMEOUT(values().ids(), QStringList{id(2)}, patience);
    QTRY_COMPARE_WITH_TIMEOUT(contentOf(plan().folder).keys(),
                              (QStringList{QStringLiteral("R2/R2.dat"), QStringLiteral("R2/RecordData.xml")}),
                              patience);
    // The same words again mean the same again.
    QVERIFY(store(finishedRecord(id(1))));
    values().command<Value<bool>>("Synchronize")->HasChanged(TChangeCode::ValueChanged, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(values().ids(), (QStringList{id(1), id(2)}), patience);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("not deleted.*R3")));
    values().command<Value<QString>>("DeleteRecordingList")->HasChanged(TChangeCode::ValueChanged, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(values().ids(), QStringList{id(2)}, patience);
}

void TestServedDevice::deletesNothingThatIsProtectedOrInUse()
{
    ZELKO_RecordData kept = finishedRecord(id(1));
    kept.SetDeletable(false);
    QVERIFY(store(kept));
    ZELKO_RecordData replayed = finishedRecord(id(2));
    replayed.SetRecordStatus(Status::Replaying);
    QVERIFY(store(replayed));
    QVERIFY(store(finishedRecord(id(3))));
    DevicePlan recording = plan();
    recording.sources = {QStringLiteral("generator:fm,rate=10000")};
    serve(recording);
    QTRY_COMPARE_WITH_TIMEOUT(values().map()->Size(), std::uint64_t{4}, patience);
    QStringList all = values().ids();
    const auto before = all.filter(QRegularExpression(QStringLiteral("^R[12]$"))) +
                        all.filter(QRegularExpression(QStringLiteral("^20")));
    QTest::ignoreMessage(
        QtWarningMsg,
        QRegularExpression(QStringLiteral("^D1 : not deleted.* 4 records, the first is %1$").arg(before.last())));
    all.append(QStringLiteral("nobody"));
    values().command<Value<QString>>("DeleteRecordingList")->SetValue(all.join(QLatin1Char('@')), nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(!values().map()->contains(id(3)), patience);
    QCOMPARE(values().map()->Size(), std::uint64_t{3});
    for (const QString& recordID : before) {
        QVERIFY2(values().map()->contains(recordID), qPrintable(recordID));
        QVERIFY(QFile::exists(plan().folder + QStringLiteral("/%1/RecordData.xml").arg(recordID)));
    }
}

void TestServedDevice::logsOneLineForAWholeListOfUnknownRecords()
{
    serveStored();
    const QStringList unknown = QStringList(100'000, QStringLiteral("two\nlines"));
    LogLines log;
    values().command<Value<QString>>("DeleteRecordingList")->SetValue(unknown.join(QLatin1Char('@')), nullptr);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("D1 : not deleted, in use, protected or unknown: 100000 records, "
                                                     "the first is two lines")});
}

void TestServedDevice::synchronizesWithTheDisk()
{
    QVERIFY(store(finishedRecord(id(1))));
    serveStored();
    ZELKO_RecordData changed = finishedRecord(id(1));
    changed.SetRecordName(QStringLiteral("By hand"));
    QVERIFY(DeviceStore(plan().folder).save(changed));
    values().command<Value<bool>>("Synchronize")->HasChanged(TChangeCode::ValueChanged, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(values().record(id(1))->GetRecordName(), QStringLiteral("By hand"), patience);
}

void TestServedDevice::synchronizesOneRecord()
{
    QVERIFY(store(finishedRecord(id(1))));
    QVERIFY(store(finishedRecord(id(2))));
    serveStored();
    for (int i = 1; i <= 2; ++i) {
        ZELKO_RecordData changed = finishedRecord(id(i));
        changed.SetRecordName(QStringLiteral("By hand"));
        QVERIFY(DeviceStore(plan().folder).save(changed));
    }
    values().command<Value<QString>>("SyncOneRecord")->SetValue(QStringLiteral("nobody"), nullptr);
    values().command<Value<QString>>("SyncOneRecord")->SetValue(id(2), nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(values().record(id(2))->GetRecordName(), QStringLiteral("By hand"), patience);
    QCOMPARE(values().record(id(1))->GetRecordName(), finishedRecord(id(1)).GetRecordName());
}

void TestServedDevice::putsARecordToRest()
{
    ZELKO_RecordData damaged = finishedRecord(id(1));
    damaged.SetRecordStatus(Status::Damaged);
    QVERIFY(store(damaged));
    serveStored();
    values().command<Value<QString>>("SetRecordIdle")->SetValue(id(1), nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(values().record(id(1))->GetRecordStatus(), Status::Finished, patience);
}

void TestServedDevice::stopsARecordingThatIsToBeIdle()
{
    DevicePlan recording = plan();
    recording.sources = {QStringLiteral("generator:fm,rate=10000")};
    serve(recording);
    QTRY_COMPARE_WITH_TIMEOUT(values().map()->Size(), std::uint64_t{1}, patience);
    const QString recordID = values().ids().first();
    values().command<Value<QString>>("SetRecordIdle")->SetValue(recordID, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(values().record(recordID)->GetRecordStatus(), Status::Finished, patience);
}

void TestServedDevice::changesPreparedRecordsForLoadTests()
{
    DevicePlan load = plan();
    load.preparedRecords = 10;
    load.churn.perSecond = 500;
    serve(load);
    const PreparedRecords prepared(QStringLiteral("D1"), 10);
    QTRY_VERIFY_WITH_TIMEOUT(values().isLoaded(), patience);
    const auto allChanged = [&] {
        for (int i = 0; i < prepared.count(); ++i) {
            if (values().record(prepared.recordId(i))->GetSize() <= prepared.record(i).GetSize()) {
                return false;
            }
        }
        return true;
    };
    QTRY_VERIFY_WITH_TIMEOUT(allChanged(), patience);
    QString error;
    QVERIFY(*DeviceStore(load.folder).read(prepared.recordId(0), &error) == prepared.record(0));
}

QTEST_GUILESS_MAIN(TestServedDevice)
#include "tst_serveddevice.moc"
