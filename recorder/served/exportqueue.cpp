#include <recorder/served/exportqueue.h>

#include <zelkobase/names/valuenames.h>

#include <algorithm>

namespace ZelkoRecorder {

using Partial = RecordExport::Partial;
using ZELKO_XML::ZELKO_RecordData;

struct ExportQueue::Errand
{
    QString id;
    RecordUses::Handle use;
    RecordExport job;
    std::atomic<bool> cancelled = false;
    std::atomic<Partial> partial = Partial::Removed;
    std::atomic<quint64> moved = 0;
};

namespace {

QString exportId(const QString& device, const QString& recordID, const QString& path, const ZELKO_RecordData& record)
{
    const QStringList parts{device, recordID, path, ZELKO_RecordData::DataFormatToName(record.GetDataFormat())};
    return parts.join(zelko::names::idSeparator);
}

} // namespace

ExportQueue::ExportQueue(const ExportFolders& folders, Brake brake, QObject* parent)
    : QObject(parent)
    , m_folders(folders)
    , m_brake(std::move(brake))
{}

ExportQueue::~ExportQueue()
{
    m_ending = true;
}

QString ExportQueue::enqueue(const Source& source, const QString& recordID, const QString& path, StoreStatus* status)
{
    if (isFull()) {
        *status = StoreStatus::TooMany;
        return {};
    }
    RecordUses::Handle use = source.uses.begin(recordID, RecordUses::Kind::Export);
    if (!use) {
        *status = StoreStatus::InUse;
        return {};
    }
    RecordExport job(source.store, recordID, m_folders, path);
    *status = job.status();
    if (*status != StoreStatus::Done) {
        return {};
    }
    const QString id = exportId(source.device, recordID, path, *job.record());
    const ErrandPointer errand(new Errand{id, std::move(use), std::move(job)});
    *status = note(errand);
    return *status == StoreStatus::Done ? id : QString();
}

bool ExportQueue::isFull() const
{
    const std::lock_guard lock(m_mutex);
    return m_errands.size() >= mostExports;
}

// `InUse` if there is one of that ID already; others may have filled the queue meanwhile.
StoreStatus ExportQueue::note(const ErrandPointer& errand)
{
    {
        const std::lock_guard lock(m_mutex);
        if (find(errand->id) != m_errands.cend()) {
            return StoreStatus::InUse;
        }
        if (m_errands.size() >= mostExports) {
            return StoreStatus::TooMany;
        }
        m_errands.append(errand);
    }
    tellPending();
    m_thread.enqueue([this, errand] { run(errand); });
    return StoreStatus::Done;
}

// The ID as a client has it: whatever else it may be, it is compared and nothing more.
StoreStatus ExportQueue::cancel(const QString& exportID, Partial partial)
{
    const std::lock_guard lock(m_mutex);
    const auto errand = find(exportID);
    if (errand == m_errands.cend()) {
        return StoreStatus::UnknownEntry;
    }
    (*errand)->partial = partial;
    (*errand)->cancelled = true;
    return StoreStatus::Done;
}

int ExportQueue::pending() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_errands.size()) - (m_isRunning ? 1 : 0);
}

QList<ExportQueue::ErrandPointer>::const_iterator ExportQueue::find(const QString& exportID) const
{
    return std::find_if(m_errands.cbegin(), m_errands.cend(),
                        [&exportID](const ErrandPointer& errand) { return errand->id == exportID; });
}

void ExportQueue::setRunning(bool isRunning)
{
    const std::lock_guard lock(m_mutex);
    m_isRunning = isRunning;
    if (!isRunning) {
        m_errands.removeFirst();
    }
}

void ExportQueue::run(const ErrandPointer& errand)
{
    setRunning(true);
    tellPending();
    m_news.post([this, id = errand->id] { Q_EMIT started(id); });
    const StoreStatus status = errand->job.run(
        [&](quint64 moved) {
            report(errand, moved);
            if (m_brake) {
                m_brake();
            }
            return !m_ending && !errand->cancelled;
        },
        [&] { return errand->partial.load(); });
    errand->use.reset();
    setRunning(false);
    m_news.post([this, id = errand->id, status] { Q_EMIT finished(id, status); });
}

// However fast it goes, there is no more than one message on its way.
void ExportQueue::report(const ErrandPointer& errand, quint64 moved)
{
    errand->moved = moved;
    if (m_progressIsOnItsWay.exchange(true)) {
        return;
    }
    m_news.post([this, errand] {
        m_progressIsOnItsWay = false;
        Q_EMIT progress(errand->moved, errand->job.size());
    });
}

void ExportQueue::tellPending()
{
    m_news.post([this] { Q_EMIT pendingChanged(pending()); });
}

} // namespace ZelkoRecorder
