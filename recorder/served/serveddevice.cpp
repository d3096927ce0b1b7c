#include <recorder/served/serveddevice.h>

#include <recorder/served/awaitresult.h>
#include <recorder/served/replayvalues.h>
#include <recorder/served/storeworker.h>
#include <recorder/source/cleantext.h>
#include <recorder/store/recorderlog.h>

#include <observerbase/iobserver.h>
#include <valuecore/valueptr.h>
#include <zelkobase/maps/recorditemmap.h>
#include <zelkobase/names/valuenames.h>

#include <QFileSystemWatcher>
#include <QSet>
#include <QTimer>

#include <map>

namespace ZelkoRecorder {

using zelko::recordmap::RecordMapData;

namespace {

// A burst of changes to the store makes one look at it.
constexpr std::chrono::milliseconds foldTime{100};

// How often the store is looked through where the system cannot tell of changes.
constexpr std::chrono::seconds pollTime{5};

} // namespace

struct ServedDevice::Private final : public IObserver
{
    Private(Tree& tree, const DeviceIdentity& identity, const DevicePlan& plan);
    ~Private() override;

    void connectWorker();
    void connectRecordings();
    void watchStore();
    RecordPointers listed() const;
    void takeFromDisk(const RecordPointers& read);
    void show(const RecordPointer& record);
    void erase(const QStringList& recordIDs);
    void endRecording(const QString& recordID);

    void Update(Observable* source, TChangeCode code) override;
    void deleteRecords(const QStringList& recordIDs);
    void synchronizeOne(const QString& recordID);
    void setIdle(const QString& recordID);

    const QString device;
    const DeviceStore store;
    const PreparedRecords prepared;
    const ServedBranch branch;
    zelko::recordmap::RecordItemMap& records;
    QSet<QString> beingRecorded;
    bool isReady = false; // for records to be born

    // A recording that somebody else makes.
    struct Foreign
    {
        std::function<void()> stop;
        RecordUses::Handle use;
    };

    RecordUses uses;
    std::map<QString, Foreign> foreign;
    ForeignEdits foreignEdits;
    DeviceClock clock;
    StoreWorker worker;
    RecordingThread recordings;
    Replays replays;
    ReplayValues replayValues;
    RecordChurn churn;
    QFileSystemWatcher watcher;
    QTimer rescanTimer;

    ValueObservingPtr<BoolValue> synchronize{this};
    ValueObservingPtr<TextValue> syncOneRecord{this};
    ValueObservingPtr<TextValue> deleteRecordingList{this};
    ValueObservingPtr<TextValue> setRecordIdle{this};

    Mailbox requests; // of other threads
    DeviceService service;
};

ServedDevice::Private::Private(Tree& tree, const DeviceIdentity& identity, const DevicePlan& plan)
    : device(identity.id)
    , store(plan.folder)
    , prepared(identity.id, plan.preparedRecords)
    , branch(tree, identity)
    , records(*branch.records)
    , clock(plan.folder)
    , worker(store, prepared, uses)
    , recordings(identity.id, {store, uses, clock}, plan.sources, plan.pace, plan.repeat)
    , replays(uses)
    , replayValues(tree, identity.id, replays)
    , churn(records, prepared, plan.churn)
    , service({store, worker, recordings, foreignEdits, uses, replays, clock}, [this] {
        return awaitResult([this](auto job) { requests.post(std::move(job)); }, [this] { return listed(); },
                           RecordPointers());
    })
{
    synchronize = branch.synchronize;
    syncOneRecord = branch.syncOneRecord;
    deleteRecordingList = branch.deleteRecordingList;
    setRecordIdle = branch.setRecordIdle;
    connectWorker();
    connectRecordings();
    connect(&replays, &Replays::changed, &worker, [this](const QString& id) { synchronizeOne(id); });
    watchStore();
    worker.load();
}

ServedDevice::Private::~Private() = default;

// Nothing is recorded before the load has looked at what earlier runs left behind: it would take a new record for one
// of theirs.
void ServedDevice::Private::connectWorker()
{
    connect(&worker, &StoreWorker::counted, &worker, [this](int count) {
        qCInfo(recorderLog).noquote() << device << ": loading" << count << "records";
        branch.loadCount->SetValue(count, nullptr);
        isReady = true;
        recordings.start();
    });
    connect(&worker, &StoreWorker::recordsRead, &worker, [this](const RecordPointers& read) { takeFromDisk(read); });
    connect(&worker, &StoreWorker::recordsGone, &worker, [this](const QStringList& ids) { erase(ids); });
    connect(&worker, &StoreWorker::loaded, &worker, [this] {
        qCInfo(recorderLog).noquote() << device << ": loaded," << records.Size() << "records";
        branch.loadedCompletly->SetValue(true, nullptr);
        churn.start();
    });
}

void ServedDevice::Private::connectRecordings()
{
    connect(&recordings, &RecordingThread::recordBegins, &worker,
            [this](const QString& id) { beingRecorded.insert(id); });
    connect(&recordings, &RecordingThread::recordChanged, &worker,
            [this](const RecordPointer& record) { show(record); });
    connect(&recordings, &RecordingThread::recordEnded, &worker, [this](const QString& id) { endRecording(id); });
}

void ServedDevice::Private::watchStore()
{
    rescanTimer.setSingleShot(true);
    connect(&rescanTimer, &QTimer::timeout, &worker, [this] { worker.rescan(); });
    connect(&watcher, &QFileSystemWatcher::directoryChanged, &worker, [this] {
        if (!rescanTimer.isActive()) {
            rescanTimer.start(foldTime);
        }
    });
    if (!watcher.addPath(store.folder())) {
        qCWarning(recorderLog).noquote() << "cannot watch" << store.folder() << ", looking through it regularly";
        rescanTimer.setSingleShot(false);
        rescanTimer.start(pollTime);
    }
}

RecordPointers ServedDevice::Private::listed() const
{
    RecordPointers all;
    all.reserve(static_cast<qsizetype>(records.Size()));
    for (const auto& [recordID, item] : std::as_const(records).data()) {
        all.append(item.GetRecordData());
    }
    return all;
}

// What was read while its recording went on may be older than what the recording told.
void ServedDevice::Private::takeFromDisk(const RecordPointers& read)
{
    for (const RecordPointer& record : read) {
        if (!beingRecorded.contains(record->GetRecordID())) {
            show(record);
        }
    }
}

void ServedDevice::Private::show(const RecordPointer& record)
{
    records.SetAt(record->GetRecordID(), RecordMapData(replays.asShown(record)), nullptr);
}

void ServedDevice::Private::erase(const QStringList& recordIDs)
{
    for (const QString& id : recordIDs) {
        if (!beingRecorded.contains(id)) {
            records.EraseAt(id, nullptr);
        }
    }
}

// Its folder may have been taken away while it was being recorded; now that shows.
void ServedDevice::Private::endRecording(const QString& recordID)
{
    beingRecorded.remove(recordID);
    worker.readOne(recordID);
}

void ServedDevice::Private::Update(Observable* source, TChangeCode code)
{
    if (code != TChangeCode::ValueChanged) {
        return;
    }
    if (source == synchronize.get()) {
        worker.readAll();
    } else if (source == syncOneRecord.get()) {
        synchronizeOne(syncOneRecord->GetValue());
    } else if (source == deleteRecordingList.get()) {
        deleteRecords(deleteRecordingList->GetValue().split(zelko::names::idSeparator, Qt::SkipEmptyParts));
    } else if (source == setRecordIdle.get()) {
        setIdle(setRecordIdle->GetValue());
    }
}

// A client may ask for anything, so what may not be deleted is looked up here again, and a list of any length makes one
// line in the log.
void ServedDevice::Private::deleteRecords(const QStringList& recordIDs)
{
    QStringList deletable;
    QStringList spared;
    for (const QString& id : recordIDs) {
        const bool mayGo = records.contains(id) && !beingRecorded.contains(id) &&
                           DeviceStore::mayDelete(*records.At(id).GetRecordData());
        (mayGo ? deletable : spared).append(id);
    }
    if (!spared.isEmpty()) {
        constexpr qsizetype longestId = 128;
        qCWarning(recorderLog).noquote() << device << ": not deleted, in use, protected or unknown:" << spared.size()
                                         << "records, the first is" << cleanText(spared.first(), longestId);
    }
    worker.remove(deletable);
}

void ServedDevice::Private::synchronizeOne(const QString& recordID)
{
    if (records.contains(recordID) && !beingRecorded.contains(recordID)) {
        worker.readOne(recordID);
    }
}

void ServedDevice::Private::setIdle(const QString& recordID)
{
    if (const auto found = foreign.find(recordID); found != foreign.end()) {
        found->second.stop();
    } else if (beingRecorded.contains(recordID)) {
        recordings.stopRecording(recordID);
    } else if (records.contains(recordID)) {
        replays.stop(recordID);
        worker.putToRest(recordID);
    }
}

ServedDevice::ServedDevice(Tree& tree, const DeviceIdentity& identity, const DevicePlan& plan, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(tree, identity, plan))
{}

ServedDevice::~ServedDevice() = default;

DeviceService& ServedDevice::service()
{
    return d->service;
}

void ServedDevice::whenReady(QObject* context, std::function<void()> ready)
{
    if (d->isReady) {
        QMetaObject::invokeMethod(context, std::move(ready), Qt::QueuedConnection);
    } else {
        connect(
            &d->worker, &StoreWorker::counted, context, [ready = std::move(ready)] { ready(); },
            Qt::SingleShotConnection);
    }
}

void ServedDevice::beginForeignRecording(const QString& recordID, std::function<void()> stop,
                                         const std::shared_ptr<EditQueue>& edits)
{
    d->foreignEdits.begin(recordID, edits);
    d->beingRecorded.insert(recordID);
    d->foreign[recordID] = {std::move(stop), d->uses.begin(recordID, RecordUses::Kind::Recording)};
}

void ServedDevice::showForeignRecording(const RecordPointer& record)
{
    d->show(record);
}

void ServedDevice::endForeignRecording(const QString& recordID)
{
    d->foreignEdits.end(recordID);
    d->foreign.erase(recordID);
    d->endRecording(recordID);
}

} // namespace ZelkoRecorder
