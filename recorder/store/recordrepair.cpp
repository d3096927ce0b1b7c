#include <recorder/store/recordrepair.h>

#include <recorder/store/storedfiles.h>

#include <QFile>

#include <unistd.h>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;
using Status = ZELKO_RecordData::RecordStatus;

namespace {

void dropIndexBeyond(quint64 size, ZELKO_RecordData& record)
{
    QVector<ZELKO_XML::IndexEntry> index = std::as_const(record).GetIndexEntry();
    index.removeIf([size](const ZELKO_XML::IndexEntry& entry) { return entry.GetRecordOffset() > size; });
    record.SetIndexEntry(index);
}

bool cutDurably(QFile& samples, quint64 size)
{
    return samples.resize(static_cast<qint64>(size)) && ::fdatasync(samples.handle()) == 0;
}

} // namespace

bool isUnfinished(const ZELKO_RecordData& record)
{
    const Status status = record.GetRecordStatus();
    return status == Status::Recording || status == Status::LoopRecording || status == Status::Stopping ||
           (record.IsFinishedSet() && !record.GetFinished());
}

void closeAtLastIndexEntry(ZELKO_RecordData& record)
{
    const auto& index = std::as_const(record).GetIndexEntry();
    const quint64 size = index.isEmpty() ? 0 : index.constLast().GetRecordOffset();
    record.SetSize(size);
    record.SetStopPosition(size);
    record.SetStopTime(index.isEmpty() ? record.GetStartTime() : index.constLast().GetTimestamp());
    record.SetRecordStatus(Status::Finished);
    record.SetFinished(true);
}

// Whoever records protects the record until its end; whatever else is unfinished somebody has put there as it is.
bool repairRecord(const QString& folder, bool wasRecordedHere, ZELKO_RecordData& record, QString* error)
{
    QFile samples(sampleFilePath(folder, record));
    if (!samples.open(QIODevice::ReadWrite)) {
        *error = samples.errorString();
        return false;
    }
    dropIndexBeyond(static_cast<quint64>(samples.size()), record);
    closeAtLastIndexEntry(record);
    record.SetDeletable(wasRecordedHere || record.GetDeletable());
    if (!cutDurably(samples, record.GetSize()) || !saveMetaData(folder, record)) {
        *error = QStringLiteral("it cannot be written");
        return false;
    }
    removeTemporaries(folder);
    return true;
}

} // namespace ZelkoRecorder
