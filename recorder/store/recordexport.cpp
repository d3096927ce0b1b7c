#include <recorder/store/recordexport.h>

#include <recorder/source/regularfile.h>
#include <recorder/store/recordtimeline.h>
#include <recorder/store/storedfiles.h>

namespace ZelkoRecorder {

RecordExport::RecordExport(const DeviceStore& store, const QString& recordID, const ExportFolders& folders,
                           const QString& path)
    : m_store(store)
    , m_folders(folders)
    , m_path(path)
    , m_status(prepare(recordID))
{}

// Makes nothing and keeps nothing open: it may be long until `run`, or never.
StoreStatus RecordExport::prepare(const QString& recordID)
{
    if (const StoreStatus status = readWhole(m_store, recordID, &m_record); status != StoreStatus::Done) {
        return status;
    }
    OpenFolder target;
    bool isThere = false;
    if (const StoreStatus status = m_folders.look(m_path, &target, &isThere); status != StoreStatus::Done) {
        return status;
    }
    if (isThere && target.has(recordID)) {
        return StoreStatus::Exists;
    }
    return ByteTransfer::hasRoomFor(size(), target.path()) ? StoreStatus::Done : StoreStatus::NoSpace;
}

quint64 RecordExport::size() const
{
    return m_record ? RecordTimeline(*m_record).stopOffset() : 0;
}

// The name is always the same, so that the next try removes what a kill has left of this one.
QString RecordExport::builtIn() const
{
    return QStringLiteral(".export-") + m_record->GetRecordID();
}

StoreStatus RecordExport::run(const ByteTransfer::Watcher& watcher, const std::function<Partial()>& partial)
{
    m_status = m_folders.open(m_path, &m_target);
    if (m_status != StoreStatus::Done) {
        return m_status;
    }
    m_target.remove(builtIn());
    m_status = write(watcher);
    if (m_status == StoreStatus::Done) {
        m_status = publish();
    }
    if (m_status == StoreStatus::Cancelled && partial && partial() == Partial::Kept) {
        keepPartial();
    } else if (m_status != StoreStatus::Done) {
        m_target.remove(builtIn());
    }
    return m_status;
}

StoreStatus RecordExport::write(const ByteTransfer::Watcher& watcher) const
{
    const OpenFolder folder = m_target.make(builtIn());
    if (!folder.isOpen()) {
        return StoreStatus::DiskRefused;
    }
    QString error;
    const auto source =
        openRegularFile(sampleFilePath(m_store.recordFolder(m_record->GetRecordID()), *m_record), &error);
    if (!source) {
        return StoreStatus::UnknownRecord;
    }
    QFile samples(sampleFilePath(folder.path(), *m_record));
    if (!samples.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        return StoreStatus::DiskRefused;
    }
    ByteTransfer transfer(watcher);
    if (const StoreStatus status = transfer.append(*source, 0, size(), samples); status != StoreStatus::Done) {
        return status;
    }
    const bool isDurable = ByteTransfer::flush(samples) && saveMetaData(folder.path(), *m_record);
    return isDurable ? StoreStatus::Done : StoreStatus::DiskRefused;
}

StoreStatus RecordExport::publish() const
{
    const QString& name = m_record->GetRecordID();
    if (m_target.has(name)) {
        return StoreStatus::Exists;
    }
    if (m_target.rename(builtIn(), name)) {
        return StoreStatus::Done;
    }
    return m_target.has(name) ? StoreStatus::Uncertain : StoreStatus::DiskRefused;
}

void RecordExport::keepPartial() const
{
    constexpr int mostKept = 1000;
    const QString name = m_record->GetRecordID() + QStringLiteral(".partial");
    QString free = name;
    for (int number = 2; m_target.has(free) && number < mostKept; ++number) {
        free = name + QString::number(number);
    }
    if (m_target.has(free) || !m_target.rename(builtIn(), free)) {
        m_target.remove(builtIn());
    }
}

} // namespace ZelkoRecorder
