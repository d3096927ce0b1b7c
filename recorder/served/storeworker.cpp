#include <recorder/served/storeworker.h>

#include <recorder/store/recorderlog.h>
#include <recorder/store/recordrepair.h>

#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;

namespace {

constexpr qsizetype sliceSize = 128;

} // namespace

StoreWorker::StoreWorker(const DeviceStore& store, const PreparedRecords& prepared, RecordUses& uses, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_prepared(prepared)
    , m_uses(uses)
{}

StoreWorker::~StoreWorker() = default;

void StoreWorker::load()
{
    m_thread.enqueue([this] { listAll(); });
}

void StoreWorker::rescan()
{
    m_thread.enqueue([this] { compareNames(); });
}

// However often it is asked for, it waits once; what changes after it was begun the next one reads.
void StoreWorker::readAll()
{
    if (m_readAllWaits.exchange(true)) {
        return;
    }
    m_thread.enqueue([this] {
        m_readAllWaits = false;
        compareNames();
        readSlices(m_known.values());
    });
}

void StoreWorker::readOne(const QString& recordID, const Answer& answer)
{
    if (!answer && !noteWaiting(recordID)) {
        return;
    }
    m_thread.enqueue([this, recordID, answer] {
        if (!answer) {
            forgetWaiting(recordID);
        }
        m_known.insert(recordID); // to whoever asks: so it is told of if it is not there
        readSlices({recordID});
        if (answer) {
            answer(m_known.contains(recordID) ? StoreStatus::Done : StoreStatus::UnknownRecord);
        }
    });
}

// False if a reading of the record waits already.
bool StoreWorker::noteWaiting(const QString& recordID)
{
    const std::lock_guard lock(m_mutex);
    const qsizetype before = m_readingsThatWait.size();
    m_readingsThatWait.insert(recordID);
    return m_readingsThatWait.size() > before;
}

void StoreWorker::forgetWaiting(const QString& recordID)
{
    const std::lock_guard lock(m_mutex);
    m_readingsThatWait.remove(recordID);
}

void StoreWorker::reach(const Answer& answer)
{
    m_thread.enqueue([answer] { answer(StoreStatus::Done); });
}

// After a failure the disk may have the new state all the same: then that is what is shown.
void StoreWorker::edit(const QString& recordID, const RecordEdit& edit, const Answer& answer)
{
    m_thread.enqueue([this, recordID, edit, answer] {
        const RecordChange made = RecordChanges(m_store).make(recordID, edit);
        if (made.record) {
            m_known.insert(recordID);
            tellOf({made.record});
        } else if (made.status == StoreStatus::DiskRefused || made.status == StoreStatus::Uncertain) {
            readSlices({recordID});
        }
        answer(made.status);
    });
}

void StoreWorker::add(const RecordPointer& record)
{
    m_thread.enqueue([this, record] {
        m_known.insert(record->GetRecordID());
        tellOf({record});
    });
}

void StoreWorker::putToRest(const QString& recordID)
{
    m_thread.enqueue([this, recordID] {
        QString error;
        const RecordPointer record = m_store.readAtRest(recordID, &error);
        if (!record) {
            qCWarning(recorderLog).noquote() << "cannot put" << recordID << "to rest:" << error;
            return;
        }
        if (record->GetRecordStatus() != ZELKO_RecordData::RecordStatus::Finished) {
            record->SetRecordStatus(ZELKO_RecordData::RecordStatus::Finished);
            record->SetFinished(true);
            if (!m_store.save(*record)) {
                qCWarning(recorderLog).noquote() << "cannot put" << recordID << "to rest: the disk refuses";
            }
        }
        readSlices({recordID});
    });
}

// In parts, so that the first of many are gone from the lists of clients before the last are from the disk.
void StoreWorker::remove(const QStringList& recordIDs)
{
    if (recordIDs.isEmpty()) {
        return;
    }
    qCInfo(recorderLog).noquote() << "deleting" << recordIDs.size() << "records from" << m_store.folder();
    QElapsedTimer clock;
    clock.start();
    const auto gone = std::make_shared<qsizetype>(0);
    for (qsizetype begin = 0; begin < recordIDs.size(); begin += sliceSize) {
        m_thread.enqueue([this, gone, ids = recordIDs.mid(begin, sliceSize)] { *gone += removePart(ids); });
    }
    m_thread.enqueue([this, gone, clock] {
        qCInfo(recorderLog).noquote() << "deleted" << *gone << "records from" << m_store.folder() << "in"
                                      << clock.elapsed() << "ms";
    });
}

// Whoever asked may have seen the records before somebody else protected them or began to use them.
qsizetype StoreWorker::removePart(const QStringList& recordIDs)
{
    std::vector<RecordUses::Handle> claims;
    QStringList deletable;
    for (const QString& id : recordIDs) {
        RecordUses::Handle claim = m_uses.begin(id, RecordUses::Kind::Deletion);
        if (claim && mayRemove(id)) {
            claims.push_back(std::move(claim));
            deletable.append(id);
        }
    }
    if (deletable.size() < recordIDs.size()) {
        qCWarning(recorderLog).noquote() << "not deleted from" << m_store.folder()
                                         << ", in use, protected or unknown:" << recordIDs.size() - deletable.size()
                                         << "records";
    }
    const QStringList gone = m_store.remove(deletable);
    for (const QString& id : gone) {
        m_known.remove(id);
    }
    tellGone(gone);
    return gone.size();
}

bool StoreWorker::mayRemove(const QString& recordID) const
{
    QString error;
    const RecordPointer record = m_store.read(recordID, &error);
    return record && DeviceStore::mayDelete(*record);
}

void StoreWorker::listAll()
{
    m_store.removeLeftovers();
    m_toLoad = m_store.recordIds();
    const QSet<QString> present(m_toLoad.cbegin(), m_toLoad.cend());
    for (int number = 0; number < m_prepared.count(); ++number) {
        const QString id = m_prepared.recordId(number);
        if (!present.contains(id)) {
            m_toLoad.append(id);
        }
    }
    m_loading = true;
    m_results.post([this, count = static_cast<int>(m_toLoad.size())] { Q_EMIT counted(count); });
    loadSlice();
}

// The rest of the load queues up behind the jobs that have come meanwhile.
void StoreWorker::loadSlice()
{
    RecordPointers slice;
    for (qsizetype left = std::min(sliceSize, m_toLoad.size()); left > 0; --left) {
        if (const RecordPointer record = loadOne(m_toLoad.takeFirst())) {
            slice.append(record);
        }
    }
    tellOf(slice);
    if (!m_toLoad.isEmpty()) {
        m_thread.enqueue([this] { loadSlice(); });
        return;
    }
    m_loading = false;
    m_results.post([this] { Q_EMIT loaded(); });
    if (m_compareAfterLoad) {
        compareNames();
    }
}

RecordPointer StoreWorker::loadOne(const QString& recordID)
{
    QString error;
    RecordPointer record = m_store.readAtRest(recordID, &error);
    if (const int number = m_prepared.numberOf(recordID); !record && number >= 0) {
        record = m_prepared.write(m_store, number);
    }
    if (record) {
        m_known.insert(recordID);
    } else {
        setAside(recordID, error);
    }
    return record;
}

void StoreWorker::compareNames()
{
    if (m_loading) {
        m_compareAfterLoad = true;
        return;
    }
    const QStringList names = m_store.recordIds();
    const QSet<QString> present(names.cbegin(), names.cend());
    const QStringList gone = (QSet<QString>(m_known) - present).values();
    const QStringList came = (QSet<QString>(present) - m_known).values();
    m_known.subtract(QSet<QString>(gone.cbegin(), gone.cend()));
    m_setAside.intersect(present);
    if (!gone.isEmpty()) {
        tellGone(gone);
    }
    readSlices(came);
}

void StoreWorker::readSlices(const QStringList& recordIDs)
{
    RecordPointers slice;
    for (const QString& id : recordIDs) {
        if (const RecordPointer record = readKnown(id)) {
            slice.append(record);
        }
        if (slice.size() == sliceSize) {
            tellOf(slice);
            slice.clear();
        }
    }
    if (!slice.isEmpty()) {
        tellOf(slice);
    }
}

// What is being recorded is known, but told of by who records it.
RecordPointer StoreWorker::readKnown(const QString& recordID)
{
    QString error;
    const RecordPointer record = m_store.read(recordID, &error);
    if (!record) {
        if (m_known.remove(recordID)) {
            tellGone({recordID});
        }
        setAside(recordID, error);
        return nullptr;
    }
    m_known.insert(recordID);
    m_setAside.remove(recordID);
    return isUnfinished(*record) ? nullptr : record;
}

void StoreWorker::tellOf(const RecordPointers& records)
{
    m_results.post([this, records] { Q_EMIT recordsRead(records); });
}

void StoreWorker::tellGone(const QStringList& recordIDs)
{
    m_results.post([this, recordIDs] { Q_EMIT recordsGone(recordIDs); });
}

// Told once, not each time the store is looked through. What is not there at all is nothing to set aside: clients may
// invent as many IDs as they like.
void StoreWorker::setAside(const QString& recordID, const QString& why)
{
    if (!m_setAside.contains(recordID) && QFileInfo::exists(m_store.recordFolder(recordID))) {
        m_setAside.insert(recordID);
        qCWarning(recorderLog).noquote() << "set aside" << m_store.recordFolder(recordID) << ":" << why;
    }
}

} // namespace ZelkoRecorder
