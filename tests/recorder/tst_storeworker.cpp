#include <recorder/served/storeworker.h>

#include <filesizelimit.h>
#include <patience.h>
#include <storedrecord.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <future>

#include <sys/stat.h>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;

class TestStoreWorker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void loadsCountThenRecordsThenEnd();
    void loadsLargeStoresInSlices();
    void setsUnreadableFoldersAside();
    void closesWhatWasBeingRecorded();
    void letsNobodyDeleteWhatOthersWereRecording();
    void makesOnlyMissingPreparedRecords();
    void makesHalfWrittenPreparedRecordsAgain();
    void makesPreparedRecordsWherePipesStand();
    void noticesFoldersThatComeAndGo();
    void passesOverRecordsThatAreBeingRecorded();
    void readsAllAnew();
    void readsOneAnew();
    void reportsARecordThatBecameUnreadable();
    void reportsARecordThatIsAskedForAndIsNotThere();
    void foldsReadingsThatWait();
    void keepsNothingOfInventedRecords();
    void putsARecordToRest();
    void saysWhenARecordCannotBePutToRest();
    void removesRecords();
    void removesNothingThatIsProtectedOrInUse();
    void changesRecords();
    void showsWhatIsOnDiskAfterAChangeThatFailed();
    void takesUpWhatOthersPutIntoTheStore();
    void answersWhetherARecordCouldBeRead();
    void mayEndInTheMiddleOfALoad();

private:
    void start(int prepared = 0);
    void load(int prepared = 0);
    static QString sorted(QStringList ids)
    {
        ids.sort();
        return ids.join(QLatin1Char(' '));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    RecordUses m_uses;
    std::unique_ptr<StoreWorker> m_worker;
    QStringList m_log;
};

void TestStoreWorker::init()
{
    m_worker.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_log.clear();
}

void TestStoreWorker::start(int prepared)
{
    m_worker = std::make_unique<StoreWorker>(DeviceStore(m_folder->path()),
                                             PreparedRecords(QStringLiteral("D"), prepared), m_uses);
    StoreWorker* const worker = m_worker.get();
    connect(worker, &StoreWorker::counted, worker,
            [this](int n) { m_log.append(QStringLiteral("counted %1").arg(n)); });
    connect(worker, &StoreWorker::loaded, worker, [this] { m_log.append(QStringLiteral("loaded")); });
    connect(worker, &StoreWorker::recordsGone, worker,
            [this](const QStringList& ids) { m_log.append(QStringLiteral("gone ") + sorted(ids)); });
    connect(worker, &StoreWorker::recordsRead, worker, [this](const RecordPointers& read) {
        QStringList ids;
        for (const RecordPointer& record : read) {
            ids.append(record->GetRecordID());
        }
        m_log.append(QStringLiteral("read ") + sorted(ids));
    });
}

void TestStoreWorker::load(int prepared)
{
    start(prepared);
    m_worker->load();
    QTRY_VERIFY_WITH_TIMEOUT(m_log.contains(QStringLiteral("loaded")), patience);
    m_log.clear();
}

void TestStoreWorker::loadsCountThenRecordsThenEnd()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R2")), 4000));
    start();
    m_worker->load();
    QTRY_COMPARE_WITH_TIMEOUT(
        m_log, (QStringList{QStringLiteral("counted 2"), QStringLiteral("read R1 R2"), QStringLiteral("loaded")}),
        patience);
}

void TestStoreWorker::loadsLargeStoresInSlices()
{
    start(300);
    m_worker->load();
    m_worker->remove({QStringLiteral("unknown")}); // a job of somebody who does not want to wait for the whole load
    QTRY_VERIFY_WITH_TIMEOUT(m_log.contains(QStringLiteral("loaded")), patience);
    QCOMPARE(m_log.size(), 6);
    QCOMPARE(m_log.at(0), QStringLiteral("counted 300"));
    QCOMPARE(m_log.indexOf(QStringLiteral("gone ")), 2);
}

void TestStoreWorker::setsUnreadableFoldersAside()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("R2")));
    QVERIFY(writeBytes(m_folder->filePath(QStringLiteral("R2/RecordData.xml.aB3dEf")), "<half"));
    const auto before = contentOf(m_folder->path());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("set aside .*R2")));
    start();
    m_worker->load();
    QTRY_COMPARE_WITH_TIMEOUT(
        m_log, (QStringList{QStringLiteral("counted 2"), QStringLiteral("read R1"), QStringLiteral("loaded")}),
        patience);
    QCOMPARE(contentOf(m_folder->path()), before);
}

void TestStoreWorker::closesWhatWasBeingRecorded()
{
    QVERIFY(storeRecord(m_folder->path(), unfinishedRecord(QStringLiteral("R1")), 4321));
    QVERIFY(DeviceStore(m_folder->path()).marks().set(QStringLiteral("R1")));
    load();
    ZELKO_RecordData record;
    QVERIFY(record.LoadXml(m_folder->filePath(QStringLiteral("R1/RecordData.xml"))));
    QVERIFY(record == finishedRecord(QStringLiteral("R1")));
}

// It was copied in while somebody else recorded it, or is of a recorder that left no marks yet.
void TestStoreWorker::letsNobodyDeleteWhatOthersWereRecording()
{
    QVERIFY(storeRecord(m_folder->path(), unfinishedRecord(QStringLiteral("R1")), 4321));
    load();
    ZELKO_RecordData record;
    QVERIFY(record.LoadXml(m_folder->filePath(QStringLiteral("R1/RecordData.xml"))));
    QCOMPARE(record.GetRecordStatus(), ZELKO_RecordData::RecordStatus::Finished);
    QCOMPARE(record.GetSize(), quint64{4000}); // closed at its last entry all the same
    m_worker->remove({QStringLiteral("R1")});
    m_worker->readOne(QStringLiteral("R1"));
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("gone "), QStringLiteral("read R1")}), 30'000);
}

void TestStoreWorker::makesOnlyMissingPreparedRecords()
{
    const PreparedRecords prepared(QStringLiteral("D"), 3);
    load(2);
    ZELKO_RecordData renamed = prepared.record(1);
    renamed.SetRecordName(QStringLiteral("By hand"));
    QVERIFY(DeviceStore(m_folder->path()).save(renamed));
    start(3);
    m_worker->load();
    QTRY_VERIFY_WITH_TIMEOUT(m_log.contains(QStringLiteral("loaded")), patience);
    QString error;
    const DeviceStore store(m_folder->path());
    QVERIFY(*store.read(prepared.recordId(1), &error) == renamed);
    QVERIFY(*store.read(prepared.recordId(2), &error) == prepared.record(2));
}

void TestStoreWorker::makesHalfWrittenPreparedRecordsAgain()
{
    const PreparedRecords prepared(QStringLiteral("D"), 1);
    QVERIFY(QDir(m_folder->path()).mkdir(prepared.recordId(0)));
    QVERIFY(writeBytes(m_folder->filePath(prepared.recordId(0) + QStringLiteral("/RecordData.xml")), "<ZELKO"));
    load(1);
    QString error;
    QVERIFY(*DeviceStore(m_folder->path()).read(prepared.recordId(0), &error) == prepared.record(0));
}

void TestStoreWorker::makesPreparedRecordsWherePipesStand()
{
    const PreparedRecords prepared(QStringLiteral("D"), 1);
    const QString folder = m_folder->filePath(prepared.recordId(0));
    QVERIFY(QDir().mkdir(folder));
    for (const char* name : {"/RecordData.xml", "/prepared-D-0000000.dat", "/prepared-D-0000000.sym"}) {
        QCOMPARE(mkfifo(QFile::encodeName(folder + name).constData(), 0600), 0);
    }
    load(1);
    QString error;
    const RecordPointer record = DeviceStore(m_folder->path()).read(prepared.recordId(0), &error);
    QVERIFY2(record, qPrintable(error));
    QVERIFY(*record == prepared.record(0));
}

void TestStoreWorker::noticesFoldersThatComeAndGo()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    load();
    QVERIFY(QDir(m_folder->filePath(QStringLiteral("R1"))).removeRecursively());
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R2")), 4000));
    m_worker->rescan();
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("gone R1"), QStringLiteral("read R2")}), patience);
    m_worker->rescan();
    m_worker->readOne(QStringLiteral("R2")); // to see that the look in between found nothing
    QTRY_COMPARE_WITH_TIMEOUT(m_log.size(), 3, patience);
    QCOMPARE(m_log.last(), QStringLiteral("read R2"));
}

void TestStoreWorker::passesOverRecordsThatAreBeingRecorded()
{
    load();
    QVERIFY(storeRecord(m_folder->path(), unfinishedRecord(QStringLiteral("R1")), 4000));
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R2")), 4000));
    m_worker->rescan();
    m_worker->readOne(QStringLiteral("R1"));
    m_worker->readAll();
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("read R2"), QStringLiteral("read R2")}), patience);
    ZELKO_RecordData record;
    QVERIFY(record.LoadXml(m_folder->filePath(QStringLiteral("R1/RecordData.xml"))));
    QVERIFY(record == unfinishedRecord(QStringLiteral("R1")));
}

void TestStoreWorker::readsAllAnew()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R2")), 4000));
    load();
    m_worker->readAll();
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("read R1 R2")}), patience);
}

void TestStoreWorker::readsOneAnew()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R2")), 4000));
    load();
    m_worker->readOne(QStringLiteral("R2"));
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("read R2")}), patience);
}

void TestStoreWorker::reportsARecordThatBecameUnreadable()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    load();
    QVERIFY(writeBytes(m_folder->filePath(QStringLiteral("R1/RecordData.xml")), "<half"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("set aside .*R1")));
    m_worker->readOne(QStringLiteral("R1"));
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("gone R1")}), patience);
    QVERIFY(QFile::exists(m_folder->filePath(QStringLiteral("R1/R1.dat"))));
}

void TestStoreWorker::reportsARecordThatIsAskedForAndIsNotThere()
{
    load();
    m_worker->readOne(QStringLiteral("R1"));
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("gone R1")}), patience);
}

// Somebody's edit takes its time.
void TestStoreWorker::foldsReadingsThatWait()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R2")), 4000));
    load();
    std::promise<void> begun;
    std::promise<void> mayEnd;
    const auto slow = [&](ZELKO_RecordData&) {
        begun.set_value();
        mayEnd.get_future().wait();
        return StoreStatus::NotAllowed;
    };
    m_worker->edit(QStringLiteral("R1"), slow, [](StoreStatus) {});
    begun.get_future().wait();
    for (int i = 0; i < 50; ++i) {
        m_worker->readAll();
        m_worker->readOne(QStringLiteral("R1"));
    }
    mayEnd.set_value();
    QTRY_COMPARE_WITH_TIMEOUT(m_log, QStringList({"read R1 R2", "read R1"}), 30'000);
    m_worker->readAll();
    m_worker->readOne(QStringLiteral("R2"));
    QTRY_COMPARE_WITH_TIMEOUT(m_log, QStringList({"read R1 R2", "read R1", "read R1 R2", "read R2"}), 30'000);
}

// It is told that they are gone, and that is all: no line in the log each.
void TestStoreWorker::keepsNothingOfInventedRecords()
{
    load();
    std::atomic<int> answered = 0;
    QTest::failOnWarning(QRegularExpression(QStringLiteral("set aside")));
    for (int i = 0; i < 10; ++i) {
        m_worker->readOne(QStringLiteral("X%1").arg(i),
                          [&](StoreStatus status) { answered += status == StoreStatus::UnknownRecord ? 1 : 0; });
    }
    QTRY_COMPARE_WITH_TIMEOUT(answered.load(), 10, 30'000);
}

void TestStoreWorker::putsARecordToRest()
{
    ZELKO_RecordData damaged = finishedRecord(QStringLiteral("R1"));
    damaged.SetRecordStatus(ZELKO_RecordData::RecordStatus::Damaged);
    QVERIFY(storeRecord(m_folder->path(), damaged, 4000));
    load();
    m_worker->putToRest(QStringLiteral("R1"));
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("read R1")}), patience);
    QString error;
    QVERIFY(*DeviceStore(m_folder->path()).read(QStringLiteral("R1"), &error) == finishedRecord(QStringLiteral("R1")));
}

// A limit of size holds for all threads: no file takes a byte more.
void TestStoreWorker::saysWhenARecordCannotBePutToRest()
{
    ZELKO_RecordData damaged = finishedRecord(QStringLiteral("R1"));
    damaged.SetRecordStatus(ZELKO_RecordData::RecordStatus::Damaged);
    QVERIFY(storeRecord(m_folder->path(), damaged, 4000));
    load();
    const FileSizeLimit full(1);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot put \"?R1\"? to rest")));
    m_worker->putToRest(QStringLiteral("R1"));
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("read R1")}), 30'000);
    QString error;
    QVERIFY(*DeviceStore(m_folder->path()).read(QStringLiteral("R1"), &error) == damaged);
}

void TestStoreWorker::removesRecords()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R2")), 4000));
    load();
    m_worker->remove({QStringLiteral("R1"), QStringLiteral("unknown")});
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("gone R1")}), patience);
    QCOMPARE(contentOf(m_folder->path()).size(), 2);
    m_worker->rescan();
    m_worker->readOne(QStringLiteral("R2"));
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("gone R1"), QStringLiteral("read R2")}), patience);
}

void TestStoreWorker::removesNothingThatIsProtectedOrInUse()
{
    ZELKO_RecordData guarded = finishedRecord(QStringLiteral("R1"));
    guarded.SetDeletable(false);
    QVERIFY(storeRecord(m_folder->path(), guarded, 4000));
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R2")), 4000));
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R3")), 4000));
    load();
    RecordUses::Handle use = m_uses.begin(QStringLiteral("R2"), RecordUses::Kind::Copy);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("not deleted .* 2 records")));
    m_worker->remove({QStringLiteral("R1"), QStringLiteral("R2"), QStringLiteral("R3")});
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("gone R3")}), patience);
    use.reset();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("not deleted .* 1 records")));
    m_worker->remove({QStringLiteral("R1"), QStringLiteral("R2")});
    QTRY_COMPARE_WITH_TIMEOUT(m_log.size(), 2, patience);
    QCOMPARE(m_log.last(), QStringLiteral("gone R2"));
    QCOMPARE(DeviceStore(m_folder->path()).recordIds(), QStringList{QStringLiteral("R1")});
    QVERIFY(m_uses.begin(QStringLiteral("R1"), RecordUses::Kind::Deletion));
}

void TestStoreWorker::changesRecords()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    load();
    std::atomic<int> answers = 0;
    const auto change = [&](const QString& id, const QString& name, StoreStatus expected) {
        m_worker->edit(id, commentEdit(name),
                       [&answers, expected](StoreStatus status) { answers += status == expected ? 1 : 0; });
    };
    change(QStringLiteral("R1"), QStringLiteral("a"), StoreStatus::Done);
    change(QStringLiteral("R2"), QStringLiteral("b"), StoreStatus::UnknownRecord);
    change(QStringLiteral("R1"), QStringLiteral("c"), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(answers.load(), 3, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("read R1"), QStringLiteral("read R1")}), patience);
    QString error;
    QCOMPARE(DeviceStore(m_folder->path()).read(QStringLiteral("R1"), &error)->GetRecordName(), QStringLiteral("c"));
}

void TestStoreWorker::showsWhatIsOnDiskAfterAChangeThatFailed()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    load();
    std::atomic<int> status = -1;
    m_worker->edit(
        QStringLiteral("R1"), [](ZELKO_RecordData&) { return StoreStatus::DiskRefused; },
        [&status](StoreStatus answer) { status = static_cast<int>(answer); });
    QTRY_COMPARE_WITH_TIMEOUT(status.load(), static_cast<int>(StoreStatus::DiskRefused), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("read R1")}), patience);
}

void TestStoreWorker::takesUpWhatOthersPutIntoTheStore()
{
    load();
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    m_worker->add(std::make_shared<ZELKO_RecordData>(finishedRecord(QStringLiteral("R1"))));
    m_worker->rescan(); // it is known already
    m_worker->readOne(QStringLiteral("R1"));
    QTRY_COMPARE_WITH_TIMEOUT(m_log, (QStringList{QStringLiteral("read R1"), QStringLiteral("read R1")}), patience);
}

void TestStoreWorker::answersWhetherARecordCouldBeRead()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    load();
    std::atomic<int> good = -1;
    std::atomic<int> bad = -1;
    m_worker->readOne(QStringLiteral("R1"), [&good](StoreStatus status) { good = static_cast<int>(status); });
    m_worker->readOne(QStringLiteral("R2"), [&bad](StoreStatus status) { bad = static_cast<int>(status); });
    QTRY_COMPARE_WITH_TIMEOUT(good.load(), static_cast<int>(StoreStatus::Done), patience);
    QTRY_COMPARE_WITH_TIMEOUT(bad.load(), static_cast<int>(StoreStatus::UnknownRecord), patience);
}

void TestStoreWorker::mayEndInTheMiddleOfALoad()
{
    start(5000);
    m_worker->load();
    QTRY_VERIFY_WITH_TIMEOUT(m_log.size() > 2, patience);
    m_worker.reset();
    const qsizetype told = m_log.size();
    QCoreApplication::processEvents();
    QCOMPARE(m_log.size(), told);
}

QTEST_GUILESS_MAIN(TestStoreWorker)
#include "tst_storeworker.moc"
