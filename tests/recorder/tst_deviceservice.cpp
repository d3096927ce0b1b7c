#include <recorder/served/servedrecorder.h>

#include <filesizelimit.h>
#include <recordervalues.h>
#include <samplebytes.h>

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <future>
#include <iterator>
#include <thread>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::BookmarkEntry;
using ZELKO_XML::ZELKO_RecordData;
using Status = ZELKO_RecordData::RecordStatus;
using Unit = RecordRange::Unit;

namespace {

const QString device = QStringLiteral("D1");
const QString id = QStringLiteral("R1");

// Asks the service as a client does: from another thread, while the thread of the tree goes on.
template <typename Ask>
auto ask(const Ask& what)
{
    auto answer = std::async(std::launch::async, what);
    while (answer.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
        QCoreApplication::processEvents();
    }
    return answer.get();
}

BookmarkEntry bookmark(quint64 time)
{
    BookmarkEntry entry;
    entry.SetTimestamp(time);
    entry.SetBookmark(QStringLiteral("mark"));
    return entry;
}

} // namespace

class TestDeviceService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_recorder.reset(); }
    void knowsItsDevices();
    void listsTheRecords();
    void readsARecord();
    void showsEachChangeOnTheTree();
    void refusesRecordsThatAreNone_data();
    void refusesRecordsThatAreNone();
    void showsWhatIsOnDiskWhenAsked();
    void copiesARange();
    void copiesWhileItLoads();
    void refusesACopyOfABadRange();
    void marksARecordWhileItIsReplayed();
    void endsAReplayWhenTheRecordIsPutToRest();
    void deletesNothingThatIsReplayed();
    void deletesNothingThatIsCopiedOrExported();
    void deletesNothingThatWasProtectedJustBefore();
    void exportsARecord();
    void stampsCommentsWithTheTimeOfTheDevice();
    void recordsWithTheTimeOfTheDevice();
    void editsARecordThatIsBeingRecorded();
    void editsARecordThatSomebodyElseRecords();
    void editsARecordAfterTheLastStepOfItsRecording_data();
    void editsARecordAfterTheLastStepOfItsRecording();
    void leavesARecordingToItself();
    void editsNoRecordWhoseEndTheDiskRefused();
    void letsSeveralClientsChangeOneRecord();
    void letsItsCallersGoWhenItEnds();

private:
    void serve(const QStringList& sources = {});
    void storeLengthy();
    QString recordedNow();
    RecorderValues values() { return {m_recorder->tree(), QString(), device}; }
    DeviceService& service() { return *m_recorder->service(device); }
    ZELKO_RecordData stored() const
    {
        ZELKO_RecordData record;
        record.LoadXml(folder() + QStringLiteral("/R1/RecordData.xml"));
        return record;
    }
    QString folder() const { return m_folder->filePath(device); }
    void requestDeletion(const QString& list)
    {
        values().command<Value<QString>>("DeleteRecordingList")->SetValue(list, nullptr);
    }
    // Something that is behind the deletion in the queue of the same worker.
    StoreStatus waitForDeletion()
    {
        return ask([this] { return service().synchronize(QStringLiteral("R2")); });
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QTemporaryDir> m_exports;
    std::unique_ptr<ServedRecorder> m_recorder;
};

void TestDeviceService::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_exports = std::make_unique<QTemporaryDir>();
    QVERIFY(storeSamples(folder(), finishedRecord(id), sampleBytes(4000)));
    QVERIFY(storeSamples(folder(), finishedRecord(QStringLiteral("R2")), sampleBytes(4000)));
}

void TestDeviceService::serve(const QStringList& sources)
{
    m_recorder = std::make_unique<ServedRecorder>(ExportFolders({m_exports->path()}));
    DevicePlan plan;
    plan.folder = folder();
    plan.sources = sources;
    plan.pace.indexInterval = std::chrono::milliseconds(50);
    QString error;
    QVERIFY2(m_recorder->addDevice({device, QStringLiteral("127.0.0.1"), QStringLiteral("1.0")}, plan, &error),
             qPrintable(error));
    QTRY_VERIFY_WITH_TIMEOUT(values().isLoaded(), 30'000);
}

// Makes R1 a record whose replay lasts for hours.
void TestDeviceService::storeLengthy()
{
    ZELKO_RecordData lengthy = finishedRecord(id);
    lengthy.SetStopTime(10'000'000'000);
    lengthy.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(10'000'000'000, 4000)});
    QVERIFY(storeSamples(folder(), lengthy, sampleBytes(4000)));
}

void TestDeviceService::knowsItsDevices()
{
    serve();
    QCOMPARE(m_recorder->deviceIds(), QStringList{device});
    QVERIFY(m_recorder->service(device));
    QVERIFY(!m_recorder->service(QStringLiteral("D2")));
}

void TestDeviceService::listsTheRecords()
{
    serve();
    QStringList ids;
    for (const RecordPointer& record : ask([this] { return service().records(); })) {
        ids.append(record->GetRecordID());
    }
    ids.sort();
    QCOMPARE(ids, (QStringList{QStringLiteral("R1"), QStringLiteral("R2")}));
}

void TestDeviceService::readsARecord()
{
    serve();
    QVERIFY(*service().record(id) == finishedRecord(id));
    for (const char* const none : {"R9", "", "..", "../D1/R1"}) {
        QVERIFY(!service().record(QString::fromLatin1(none)));
    }
}

void TestDeviceService::showsEachChangeOnTheTree()
{
    serve();
    QCOMPARE(ask([this] { return service().setComment(id, QStringLiteral("Harbour")); }), StoreStatus::Done);
    QCOMPARE(ask([this] { return service().setDeletable(id, false); }), StoreStatus::Done);
    QCOMPARE(ask([this] { return service().setBookmarks(id, {bookmark(1), bookmark(2)}); }), StoreStatus::Done);
    QCOMPARE(ask([this] { return service().deleteBookmarks(id, {bookmark(1)}); }), StoreStatus::Done);
    QCOMPARE(ask([this] { return service().addHistory(id, QStringLiteral("a comment")); }), StoreStatus::Done);
    QCOMPARE(ask([this] { return service().addHistory(id, QStringLiteral("another")); }), StoreStatus::Done);
    const quint64 key = stored().GetHistoryEntry().at(0).GetTimestamp();
    QCOMPARE(ask([this, key] { return service().removeHistory(id, key); }), StoreStatus::Done);
    const ZELKO_RecordData record = stored(); // acknowledged, so it is on disk already
    QCOMPARE(record.GetRecordName(), QStringLiteral("Harbour"));
    QVERIFY(!record.GetDeletable());
    QCOMPARE(record.GetBookmarkEntry(), QVector<BookmarkEntry>{bookmark(2)});
    QCOMPARE(record.GetHistoryEntry().size(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(*values().record(id) == record, 30'000);
}

void TestDeviceService::refusesRecordsThatAreNone_data()
{
    QTest::addColumn<QString>("recordID");
    QTest::newRow("one that is not there") << QStringLiteral("R9");
    QTest::newRow("an empty ID") << QString();
    QTest::newRow("a path") << QStringLiteral("../D1/R1");
    QTest::newRow("the folder itself") << QStringLiteral(".");
}

void TestDeviceService::refusesRecordsThatAreNone()
{
    QFETCH(const QString, recordID);
    serve();
    QString newID = QStringLiteral("as before");
    QCOMPARE(ask([=, this] { return service().setComment(recordID, {}); }), StoreStatus::UnknownRecord);
    QCOMPARE(ask([=, this] { return service().startReplay(recordID, 0, 0); }), StoreStatus::UnknownRecord);
    QCOMPARE(ask([=, this, &newID] {
                 return service().copy(recordID, {{0, 1}}, Unit::Times, {}, &newID);
             }),
             StoreStatus::UnknownRecord);
    QCOMPARE(newID, QString());
    QCOMPARE(ask([=, this] { return service().synchronize(recordID); }), StoreStatus::UnknownRecord);
}

void TestDeviceService::showsWhatIsOnDiskWhenAsked()
{
    serve();
    ZELKO_RecordData record = finishedRecord(id);
    record.SetRecordName(QStringLiteral("by hand"));
    QVERIFY(DeviceStore(folder()).save(record));
    QCOMPARE(ask([this] { return service().synchronize(id); }), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(values().record(id)->GetRecordName(), QStringLiteral("by hand"), 30'000);
    QVERIFY(QDir(folder() + QStringLiteral("/R1")).removeRecursively());
    QCOMPARE(ask([this] { return service().synchronize(id); }), StoreStatus::UnknownRecord);
    QTRY_VERIFY_WITH_TIMEOUT(!values().record(id), 30'000);
}

void TestDeviceService::copiesARange()
{
    serve();
    QString newID;
    QCOMPARE(ask([&] {
                 return service().copy(id, {{10'250'000, 10'500'000}}, Unit::Times, QStringLiteral("Part"), &newID);
             }),
             StoreStatus::Done);
    QCOMPARE(readBytes(QStringLiteral("%1/%2/%2.dat").arg(folder(), newID)), sampleBytes(4000).mid(1000, 1000));
    QTRY_VERIFY_WITH_TIMEOUT(values().record(newID), 30'000);
    QCOMPARE(values().record(newID)->GetRecordName(), QStringLiteral("Part"));
    QCOMPARE(ask([&] { return service().setDeletable(newID, false); }), StoreStatus::Done);
    QCOMPARE(values().ids().size(), 3);
}

// The first thing that is asked of it, while it clears up what a kill has left.
void TestDeviceService::copiesWhileItLoads()
{
    for (int round = 0; round < 20; ++round) {
        m_recorder = std::make_unique<ServedRecorder>();
        DevicePlan plan;
        plan.folder = folder();
        const QString leftover = folder() + QStringLiteral("/.new-R9/");
        QVERIFY(QDir().mkpath(leftover));
        for (int file = 0; file < 200; ++file) { // so that the load takes its time
            QVERIFY(writeBytes(leftover + QString::number(file), "x"));
        }
        QString error;
        QVERIFY(m_recorder->addDevice({device, QString(), QString()}, plan, &error));
        QString newID;
        QCOMPARE(service().copy(id, {{0, 4000}}, Unit::Positions, {}, &newID), StoreStatus::Done);
        QVERIFY(!QFileInfo::exists(leftover)); // it has waited for that
        QVERIFY(service().record(newID));
        m_recorder.reset();
    }
}

void TestDeviceService::refusesACopyOfABadRange()
{
    serve();
    QString newID;
    QCOMPARE(ask([&] { return service().copy(id, {}, Unit::Times, {}, &newID); }), StoreStatus::BadRange);
    QVERIFY(service().uses().begin(id, RecordUses::Kind::Deletion));
}

void TestDeviceService::marksARecordWhileItIsReplayed()
{
    storeLengthy();
    serve();
    QCOMPARE(ask([this] { return service().startReplay(id, 0, 0); }), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(values().record(id)->GetRecordStatus(), Status::Replaying, 30'000);
    QCOMPARE(service().record(id)->GetRecordStatus(), Status::Replaying);
    QCOMPARE(stored().GetRecordStatus(), Status::Finished); // a kill would leave nothing to be cleared up
    QCOMPARE(service().pauseReplay(id), StoreStatus::Done);
    QVERIFY(service().replayPosition(id)->paused);
    QCOMPARE(service().continueReplay(id), StoreStatus::Done);
    QCOMPARE(service().startReplay(id, 0, 0), StoreStatus::InUse);
    QCOMPARE(service().stopReplay(id), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(values().record(id)->GetRecordStatus(), Status::Finished, 30'000);
    QVERIFY(!service().replayPosition(id));
}

void TestDeviceService::endsAReplayWhenTheRecordIsPutToRest()
{
    storeLengthy();
    serve();
    QCOMPARE(service().startReplay(id, 0, 0), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(values().record(id)->GetRecordStatus(), Status::Replaying, 30'000);
    values().command<Value<QString>>("SetRecordIdle")->SetValue(id, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(values().record(id)->GetRecordStatus(), Status::Finished, 30'000);
}

void TestDeviceService::deletesNothingThatIsReplayed()
{
    storeLengthy();
    serve();
    QCOMPARE(service().startReplay(id, 0, 0), StoreStatus::Done);
    requestDeletion(id);
    QCOMPARE(waitForDeletion(), StoreStatus::Done);
    QVERIFY(*service().record(id) != ZELKO_RecordData());
    QCOMPARE(service().stopReplay(id), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(values().record(id)->GetRecordStatus(), Status::Finished, 30'000);
    values().command<Value<QString>>("DeleteRecordingList")->HasChanged(TChangeCode::ValueChanged, nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(!values().record(id), 30'000);
}

void TestDeviceService::deletesNothingThatIsCopiedOrExported()
{
    serve();
    for (const RecordUses::Kind kind : {RecordUses::Kind::Copy, RecordUses::Kind::Export}) {
        const RecordUses::Handle use = service().uses().begin(id, kind);
        requestDeletion(id + QLatin1Char('@') + QString::number(static_cast<int>(kind)));
        QCOMPARE(waitForDeletion(), StoreStatus::Done);
        QVERIFY(values().record(id));
        QCOMPARE(contentOf(folder()).size(), 4);
    }
}

// The tree still says that it may go: what counts is what was acknowledged.
void TestDeviceService::deletesNothingThatWasProtectedJustBefore()
{
    serve();
    QCOMPARE(service().setDeletable(id, false), StoreStatus::Done); // without a turn of the loop
    QVERIFY(values().record(id)->GetDeletable());
    requestDeletion(QStringLiteral("R1@R2"));
    QTRY_VERIFY_WITH_TIMEOUT(!values().record(QStringLiteral("R2")), 30'000);
    QVERIFY(values().record(id));
    QVERIFY(!stored().GetDeletable());
}

void TestDeviceService::exportsARecord()
{
    serve();
    StoreStatus status = StoreStatus::Ending;
    QVERIFY(!m_recorder->exportRecord(device, id, m_exports->path(), &status).isEmpty());
    QCOMPARE(status, StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(contentOf(m_exports->path()).size(), 2, 30'000);
    QVERIFY(m_recorder->exportRecord(QStringLiteral("D2"), id, m_exports->path(), &status).isEmpty());
    QCOMPARE(status, StoreStatus::UnknownRecord);
}

void TestDeviceService::stampsCommentsWithTheTimeOfTheDevice()
{
    serve();
    constexpr qint64 longAgo = 1'000'000'000'000;
    QVERIFY(service().clock().set(longAgo));
    QCOMPARE(service().addHistory(id, QStringLiteral("then")), StoreStatus::Done);
    const auto then = static_cast<qint64>(stored().GetHistoryEntry().at(0).GetTimestamp());
    QVERIFY(then >= longAgo && then <= service().clock().now());
}

void TestDeviceService::recordsWithTheTimeOfTheDevice()
{
    constexpr qint64 longAgo = 1'000'000'000'000;
    QVERIFY(DeviceClock(folder()).set(longAgo));
    serve({QStringLiteral("generator:noise,rate=8000,seconds=0.1")});
    QTRY_COMPARE_WITH_TIMEOUT(values().ids().size(), 3, 30'000);
    for (const QString& recordID : values().ids()) {
        const auto start = static_cast<qint64>(values().record(recordID)->GetStartTime());
        QVERIFY(recordID == id || recordID == QStringLiteral("R2") ||
                (start >= longAgo && start <= service().clock().now()));
    }
}

// The record that a generator without an end makes.
QString TestDeviceService::recordedNow()
{
    serve({QStringLiteral("generator:noise,rate=8000")});
    const auto other = [this] {
        QStringList ids = values().ids();
        ids.removeAll(id);
        ids.removeAll(QStringLiteral("R2"));
        return ids.join(QString());
    };
    return QTest::qWaitFor([&] { return !other().isEmpty(); }, 30'000) ? other() : QString();
}

void TestDeviceService::editsARecordThatIsBeingRecorded()
{
    const QString recorded = recordedNow();
    QVERIFY(!recorded.isEmpty());
    QCOMPARE(service().setComment(recorded, QStringLiteral("Harbour")), StoreStatus::Done);
    QCOMPARE(service().setBookmarks(recorded, {bookmark(1), bookmark(2)}), StoreStatus::Done);
    QCOMPARE(service().deleteBookmarks(recorded, {bookmark(1)}), StoreStatus::Done);
    QCOMPARE(service().deleteBookmarks(recorded, {bookmark(1)}), StoreStatus::UnknownEntry);
    QCOMPARE(service().addHistory(recorded, QStringLiteral("a comment")), StoreStatus::Done);
    const RecordPointer stored = service().record(recorded);
    QCOMPARE(stored->GetRecordStatus(), Status::Recording);
    QCOMPARE(stored->GetRecordName(), QStringLiteral("Harbour"));
    QCOMPARE(std::as_const(*stored).GetBookmarkEntry(), QVector<BookmarkEntry>{bookmark(2)});
    QCOMPARE(std::as_const(*stored).GetHistoryEntry().size(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(values().record(recorded)->GetRecordName(), QStringLiteral("Harbour"), 30'000);
    values().command<Value<QString>>("SetRecordIdle")->SetValue(recorded, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(values().record(recorded)->GetRecordStatus(), Status::Finished, 30'000);
    QCOMPARE(values().record(recorded)->GetRecordName(), QStringLiteral("Harbour"));
    QCOMPARE(service().setComment(recorded, QStringLiteral("b")), StoreStatus::Done);
}

void TestDeviceService::editsARecordThatSomebodyElseRecords()
{
    ZELKO_RecordData recorded = unfinishedRecord(QStringLiteral("R9"));
    serve();
    QVERIFY(storeSamples(folder(), recorded, sampleBytes(4000)));
    const auto edits = std::make_shared<EditQueue>();
    ServedDevice& served = *m_recorder->device(device);
    served.beginForeignRecording(
        recorded.GetRecordID(), [] {}, edits);
    auto answer = std::async(std::launch::async, [&asked = service()] { return asked.setComment("R9", "Neu"); });
    std::vector<EditQueue::Entry> entries;
    const auto hasCome = [&] {
        std::ranges::move(edits->take(), std::back_inserter(entries));
        return !entries.empty();
    };
    QTRY_VERIFY_WITH_TIMEOUT(hasCome(), 30'000);
    QCOMPARE(entries.size(), 1U);
    QCOMPARE(entries.front().edit(recorded), StoreStatus::Done);
    QCOMPARE(recorded.GetRecordName(), QStringLiteral("Neu"));
    entries.front().answer(StoreStatus::Done);
    QCOMPARE(answer.get(), StoreStatus::Done);
    served.endForeignRecording(recorded.GetRecordID());
    QCOMPARE(ask([this] { return service().setComment("R9", "Spaeter"); }), StoreStatus::InUse);
}

void TestDeviceService::editsARecordAfterTheLastStepOfItsRecording_data()
{
    using Edit = std::function<StoreStatus(DeviceService&)>;
    using Check = std::function<bool(const ZELKO_RecordData&)>;
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<Check>("isMade");
    QTest::newRow("its comment") << Edit([](auto& asked) { return asked.setComment("R9", "Neu"); })
                                 << Check([](const auto& record) { return record.GetRecordName() == "Neu"; });
    QTest::newRow("its deletable flag") << Edit([](auto& asked) { return asked.setDeletable("R9", false); })
                                        << Check([](const auto& record) { return !record.GetDeletable(); });
    QTest::newRow("its bookmarks") << Edit([](auto& asked) { return asked.setBookmarks("R9", {bookmark(2)}); })
                                   << Check([](const auto& record) { return record.GetBookmarkEntry().size() == 1; });
    QTest::newRow("its history") << Edit([](auto& asked) { return asked.addHistory("R9", "Neu"); })
                                 << Check([](const auto& record) { return record.GetHistoryEntry().size() == 1; });
}

// The recording has made the edits that came before, and puts the record at rest while the client waits.
void TestDeviceService::editsARecordAfterTheLastStepOfItsRecording()
{
    using Edit = std::function<StoreStatus(DeviceService&)>;
    using Check = std::function<bool(const ZELKO_RecordData&)>;
    QFETCH(const Edit, edit);
    QFETCH(const Check, isMade);
    const QString recorded = QStringLiteral("R9");
    serve();
    QVERIFY(storeSamples(folder(), unfinishedRecord(recorded), sampleBytes(4000)));
    std::atomic<bool> hasCome = false;
    const auto edits = std::make_shared<EditQueue>([&] { hasCome = true; });
    ServedDevice& served = *m_recorder->device(device);
    served.beginForeignRecording(
        recorded, [] {}, edits);
    QVERIFY(edits->close().empty());
    auto answer = std::async(std::launch::async, [&] { return edit(service()); });
    QTRY_VERIFY_WITH_TIMEOUT(hasCome, 30'000);
    QVERIFY(DeviceStore(folder()).save(finishedRecord(recorded)));
    edits->end();
    QCOMPARE(answer.get(), StoreStatus::Done);
    QString error;
    const RecordPointer onDisk = DeviceStore(folder()).read(recorded, &error);
    QVERIFY2(onDisk && isMade(*onDisk), qPrintable(error));
    served.endForeignRecording(recorded);
    QTRY_VERIFY_WITH_TIMEOUT(values().record(recorded) && isMade(*values().record(recorded)), 30'000);
}

void TestDeviceService::leavesARecordingToItself()
{
    const QString recorded = recordedNow();
    QVERIFY(!recorded.isEmpty());
    QString newID;
    QCOMPARE(service().setDeletable(recorded, true), StoreStatus::InUse);
    QCOMPARE(service().copy(recorded, {{0, 4000}}, Unit::Positions, {}, &newID), StoreStatus::InUse);
    QCOMPARE(service().startReplay(recorded, 0, 0), StoreStatus::InUse);
    requestDeletion(recorded);
    QCOMPARE(waitForDeletion(), StoreStatus::Done);
    QVERIFY(service().record(recorded));
}

void TestDeviceService::editsNoRecordWhoseEndTheDiskRefused()
{
    const QString recorded = recordedNow();
    QVERIFY(!recorded.isEmpty());
    const auto status = [&] { return values().record(recorded)->GetRecordStatus(); };
    const auto rename = [&] { return service().setComment(recorded, QStringLiteral("Harbour")); };
    {
        const FileSizeLimit full(100);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("recording .* failed: the disk")));
        QTRY_COMPARE_WITH_TIMEOUT(status(), Status::Damaged, 30'000);
    }
    QCOMPARE(ask(rename), StoreStatus::InUse);
    const auto putToRest = [&] { // again: it may have come before the recording ended
        values().command<Value<QString>>("SetRecordIdle")->SetValue(recorded, nullptr);
        values().command<Value<QString>>("SetRecordIdle")->HasChanged(TChangeCode::ValueChanged, nullptr);
        return status() == Status::Finished;
    };
    QTRY_VERIFY_WITH_TIMEOUT(putToRest(), 30'000);
    QCOMPARE(ask(rename), StoreStatus::Done);
}

// None of their changes undoes another's.
void TestDeviceService::letsSeveralClientsChangeOneRecord()
{
    serve();
    constexpr int clients = 4;
    constexpr int each = 25;
    std::atomic<int> done = 0;
    std::vector<std::thread> threads;
    for (int client = 0; client < clients; ++client) {
        threads.emplace_back([this, client, &done] {
            for (int i = 0; i < each; ++i) {
                const QString text = QStringLiteral("%1 %2").arg(client).arg(i);
                done += service().addHistory(id, text) == StoreStatus::Done ? 1 : 0;
                service().setComment(id, text);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    QCOMPARE(done, clients * each);
    QSet<QString> texts;
    QSet<quint64> keys;
    const ZELKO_RecordData record = stored();
    for (const auto& comment : record.GetHistoryEntry()) {
        texts.insert(comment.GetHistoryEntry());
        keys.insert(comment.GetTimestamp());
    }
    QCOMPARE(texts.size(), clients * each);
    QCOMPARE(keys.size(), clients * each);
    QVERIFY(record.GetRecordName().endsWith(QStringLiteral(" %1").arg(each - 1)));
    QTRY_VERIFY_WITH_TIMEOUT(*values().record(id) == record, 30'000);
}

// The copy is large enough to be under way still; a machine that does it in no time has done it.
void TestDeviceService::letsItsCallersGoWhenItEnds()
{
    constexpr qint64 large = qint64{1} << 30;
    ZELKO_RecordData record = finishedRecord(id);
    record.SetSize(large);
    record.SetStopPosition(large);
    record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(11'000'000, large)});
    QVERIFY(storeSamples(folder(), record, {}));
    QVERIFY(QFile::resize(folder() + QStringLiteral("/R1/R1.dat"), large));
    serve();
    QString newID;
    auto answer = std::async(std::launch::async, [this, &newID, &asked = service()] {
        return asked.copy(id, {{0, large}}, Unit::Positions, {}, &newID);
    });
    const auto isUnderWay = [this] {
        const QStringList begun = QDir(folder()).entryList({QStringLiteral(".new-*")}, QDir::Dirs | QDir::Hidden);
        return !begun.isEmpty() || QDir(folder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size() > 2;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isUnderWay(), 30'000);
    m_recorder.reset();
    const StoreStatus status = answer.get();
    QVERIFY(status == StoreStatus::Ending || status == StoreStatus::Done);
    QCOMPARE(newID.isEmpty(), status == StoreStatus::Ending);
    QCOMPARE(QDir(folder()).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot).size(),
             status == StoreStatus::Ending ? 2 : 3);
}

QTEST_GUILESS_MAIN(TestDeviceService)
#include "tst_deviceservice.moc"
