#include <recorder/store/recordchanges.h>

#include <recorder/store/recorderlog.h>
#include <recorder/store/recordrepair.h>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;

RecordChanges::RecordChanges(const DeviceStore& store)
    : m_store(store)
{}

// A change that leaves the record as it is need not be saved: what it asks for is durable already.
RecordChange RecordChanges::make(const QString& recordID, const RecordEdit& edit) const
{
    QString error;
    const RecordPointer record = m_store.read(recordID, &error);
    if (!record) {
        return {StoreStatus::UnknownRecord, nullptr};
    }
    if (isUnfinished(*record)) {
        return {StoreStatus::InUse, nullptr};
    }
    const ZELKO_RecordData before = *record;
    if (const StoreStatus status = applyEdit(*record, edit); status != StoreStatus::Done) {
        return {status, nullptr};
    }
    if (*record != before && !m_store.save(*record)) {
        return {afterRefusal(*record), nullptr};
    }
    return {StoreStatus::Done, record};
}

// A disk that fails may have taken the change and then refused to give it back.
StoreStatus RecordChanges::afterRefusal(const ZELKO_RecordData& wanted) const
{
    QString error;
    const RecordPointer stored = m_store.read(wanted.GetRecordID(), &error);
    if (!stored || *stored != wanted) {
        return StoreStatus::DiskRefused;
    }
    qCWarning(recorderLog).noquote() << "whether the change of" << wanted.GetRecordID()
                                     << "outlives the machine is not known: the disk refuses";
    return StoreStatus::Uncertain;
}

} // namespace ZelkoRecorder
