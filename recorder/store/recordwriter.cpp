#include <recorder/store/recordwriter.h>

#include <recorder/store/recordrepair.h>
#include <recorder/store/storedfiles.h>

#include <QDir>

#include <fcntl.h>
#include <unistd.h>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;

std::unique_ptr<RecordWriter> RecordWriter::create(const DeviceStore& store, const ZELKO_RecordData& birth,
                                                   QString* error)
{
    std::unique_ptr<RecordWriter> writer(new RecordWriter(store, birth));
    const QString& id = birth.GetRecordID();
    const bool isMarked = store.marks().set(id);
    if (isMarked && writer->bear(store.birthFolder(id))) {
        return writer;
    }
    *error = QStringLiteral("the record %1 cannot be made in %2").arg(id, store.folder());
    if (isMarked) {
        QDir(store.birthFolder(id)).removeRecursively();
        store.marks().clear(id);
    }
    return nullptr;
}

// It is built under a name that nobody reads, so that a folder under a record's ID always holds a whole record.
bool RecordWriter::bear(const QString& builtIn)
{
    return openIn(builtIn) && save(builtIn) && m_store.publish(m_record.GetRecordID());
}

RecordWriter::RecordWriter(const DeviceStore& store, const ZELKO_RecordData& birth)
    : m_store(store)
    , m_record(birth)
{
    const bool isLoop = birth.GetRecordingLoopSize() > 0;
    m_record.SetRecordStatus(isLoop ? ZELKO_RecordData::RecordStatus::LoopRecording
                                    : ZELKO_RecordData::RecordStatus::Recording);
    m_record.SetFinished(false);
    m_record.SetDeletable(false);
}

bool RecordWriter::openIn(const QString& folder)
{
    m_samples.setFileName(sampleFilePath(folder, m_record));
    return QDir().mkpath(folder) && m_samples.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered);
}

bool RecordWriter::append(const char* bytes, qint64 size)
{
    return m_samples.write(bytes, size) == size;
}

bool RecordWriter::step()
{
    const auto& index = std::as_const(m_record).GetIndexEntry();
    if (!index.isEmpty()) {
        m_record.SetSize(index.constLast().GetRecordOffset());
        m_record.SetStopPosition(index.constLast().GetRecordOffset());
        m_record.SetStopTime(index.constLast().GetTimestamp());
    }
    return flushSamples() && save(m_store.recordFolder(m_record.GetRecordID())) && freeBeforeStart();
}

// The file keeps its length, so that positions stay what they are. Only once the record on disk does not count on the
// samples any more, whatever happens.
bool RecordWriter::freeBeforeStart()
{
    const quint64 start = m_record.GetStartPosition();
    if (start <= m_freed) {
        return true;
    }
    const auto size = static_cast<off_t>(start - m_freed);
    const bool done = ::fallocate(m_samples.handle(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE,
                                  static_cast<off_t>(m_freed), size) == 0;
    m_freed = done ? start : m_freed;
    return done;
}

void RecordWriter::makeEdits(const std::vector<EditQueue::Entry>& entries, const std::function<void()>& saved)
{
    if (entries.empty()) {
        return;
    }
    const ZELKO_RecordData before = m_record;
    std::vector<StoreStatus> statuses;
    statuses.reserve(entries.size());
    for (const EditQueue::Entry& entry : entries) {
        statuses.push_back(applyEdit(m_record, entry.edit));
    }
    const bool isSaved = step();
    if (isSaved) {
        saved();
    } else {
        m_record = before;
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const bool isLost = !isSaved && statuses[i] == StoreStatus::Done;
        entries[i].answer(isLost ? StoreStatus::DiskRefused : statuses[i]);
    }
}

bool RecordWriter::finish()
{
    closeAtLastIndexEntry(m_record);
    m_record.SetDeletable(true);
    const bool cut = m_samples.resize(static_cast<qint64>(m_record.GetSize())) && flushSamples();
    if (cut && save(m_store.recordFolder(m_record.GetRecordID()))) {
        freeBeforeStart(); // no harm where that fails: nothing grows any more
        m_store.marks().clear(m_record.GetRecordID());
        return true;
    }
    m_saved = std::make_shared<ZELKO_RecordData>(*m_saved);
    m_saved->SetRecordStatus(ZELKO_RecordData::RecordStatus::Damaged);
    return false;
}

bool RecordWriter::flushSamples()
{
    return ::fdatasync(m_samples.handle()) == 0;
}

bool RecordWriter::save(const QString& folder)
{
    if (!saveMetaData(folder, m_record)) {
        return false;
    }
    m_saved = std::make_shared<ZELKO_RecordData>(m_record);
    return true;
}

} // namespace ZelkoRecorder
