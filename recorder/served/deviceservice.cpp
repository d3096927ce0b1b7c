#include <recorder/served/deviceservice.h>

#include <recorder/served/awaitresult.h>
#include <recorder/served/recordingthread.h>
#include <recorder/served/storeworker.h>
#include <recorder/store/recordid.h>
#include <recorder/store/storedfiles.h>

namespace ZelkoRecorder {

using Kind = RecordUses::Kind;

DeviceService::DeviceService(const Parts& parts, Listing listing)
    : m_store(parts.store)
    , m_worker(parts.worker)
    , m_recordings(parts.recordings)
    , m_foreignEdits(parts.foreignEdits)
    , m_uses(parts.uses)
    , m_replays(parts.replays)
    , m_clock(parts.clock)
    , m_listing(std::move(listing))
{}

// The copy under way is given up, and the thread that makes it goes before what it works on.
DeviceService::~DeviceService()
{
    beginEnding();
}

void DeviceService::beginEnding()
{
    m_ending = true;
}

RecordPointers DeviceService::records() const
{
    return m_listing();
}

RecordPointer DeviceService::record(const QString& recordID) const
{
    QString error;
    return isRecordId(recordID) ? m_replays.asShown(m_store.read(recordID, &error)) : nullptr;
}

// Hands a request over to the worker with a way to answer, and waits for the answer.
template <typename Ask>
StoreStatus DeviceService::askWorker(const QString& recordID, const Ask& ask)
{
    if (!isRecordId(recordID)) {
        return StoreStatus::UnknownRecord;
    }
    auto promise = std::make_shared<std::promise<StoreStatus>>();
    std::future<StoreStatus> answer = promise->get_future();
    ask([promise = std::move(promise)](StoreStatus status) { promise->set_value(status); });
    return resultOr(answer, StoreStatus::Ending, m_ending);
}

// While it is being recorded the record belongs to the recording. If that has just ended it is the worker's turn again.
StoreStatus DeviceService::edit(const QString& recordID, const RecordEdit& edit)
{
    const auto askIt = [&](const auto& answer) { m_worker.edit(recordID, edit, answer); };
    const StoreStatus status = askWorker(recordID, askIt);
    if (status != StoreStatus::InUse) {
        return status;
    }
    const std::optional<StoreStatus> ofRecording = editRecording(recordID, edit);
    return ofRecording ? *ofRecording : askWorker(recordID, askIt);
}

// Nothing if it is not being recorded; told so only after the last step of the recording, if that is under way.
std::optional<StoreStatus> DeviceService::editRecording(const QString& recordID, const RecordEdit& edit)
{
    using Result = std::optional<StoreStatus>;
    const auto promise = std::make_shared<std::promise<Result>>();
    std::future<Result> result = promise->get_future();
    const EditQueue::Entry entry{edit, [promise](StoreStatus status) { promise->set_value(status); },
                                 [promise] { promise->set_value(std::nullopt); }};
    const bool isRecording = m_recordings.edit(recordID, entry) || m_foreignEdits.post(recordID, entry);
    return isRecording ? resultOr(result, Result(StoreStatus::Ending), m_ending) : std::nullopt;
}

StoreStatus DeviceService::synchronize(const QString& recordID)
{
    return askWorker(recordID, [&](const auto& answer) { m_worker.readOne(recordID, answer); });
}

StoreStatus DeviceService::setComment(const QString& recordID, const QString& comment)
{
    return edit(recordID, commentEdit(comment));
}

StoreStatus DeviceService::setDeletable(const QString& recordID, bool deletable)
{
    return edit(recordID, deletableEdit(deletable));
}

StoreStatus DeviceService::setBookmarks(const QString& recordID, const Bookmarks& bookmarks)
{
    return edit(recordID, bookmarksEdit(bookmarks));
}

StoreStatus DeviceService::deleteBookmarks(const QString& recordID, const Bookmarks& bookmarks)
{
    return edit(recordID, bookmarksDeletion(bookmarks));
}

StoreStatus DeviceService::addHistory(const QString& recordID, const QString& text)
{
    return edit(recordID, historyAddition(text, static_cast<quint64>(m_clock.now())));
}

StoreStatus DeviceService::removeHistory(const QString& recordID, quint64 key)
{
    return edit(recordID, historyRemoval(key));
}

// Not before the load has removed what earlier runs left: it would take the copy for one of theirs. The use lasts as
// long as the job, even if nobody waits for it any more.
StoreStatus DeviceService::copy(const QString& recordID, const RecordRanges& ranges, RecordRange::Unit unit,
                                const QString& name, QString* newID)
{
    newID->clear();
    const std::shared_ptr<RecordUses::Use> use = m_uses.begin(recordID, Kind::Copy);
    if (!use) {
        return StoreStatus::InUse;
    }
    const StoreStatus loaded = askWorker(recordID, [this](const auto& answer) { m_worker.reach(answer); });
    if (loaded != StoreStatus::Done) {
        return loaded;
    }
    const auto copy =
        std::make_shared<RecordCopy>(m_store, recordID, ranges, unit, name, static_cast<quint64>(m_clock.now()));
    if (copy->status() != StoreStatus::Done) {
        return copy->status();
    }
    const QString copyID = copy->recordID();
    const StoreStatus status = awaitResult([this](auto job) { m_copier.enqueue(std::move(job)); },
                                           [this, copy, use] { return runCopy(*copy); }, StoreStatus::Ending, m_ending);
    *newID = status == StoreStatus::Done ? copyID : QString();
    return status;
}

StoreStatus DeviceService::runCopy(RecordCopy& copy)
{
    const StoreStatus status = copy.run([this](quint64) { return !m_ending; });
    if (status == StoreStatus::Done) {
        m_worker.add(copy.record());
    }
    return status == StoreStatus::Cancelled ? StoreStatus::Ending : status;
}

// Used from before it is read, so that it is not deleted in between.
StoreStatus DeviceService::startReplay(const QString& recordID, quint64 start, quint64 stop)
{
    const RecordUses::Handle use = m_uses.begin(recordID, Kind::Replay);
    if (!use) {
        return StoreStatus::InUse;
    }
    RecordPointer record;
    const StoreStatus status = readWhole(m_store, recordID, &record);
    return status == StoreStatus::Done ? m_replays.start(recordID, RecordTimeline(*record), start, stop) : status;
}

StoreStatus DeviceService::pauseReplay(const QString& recordID)
{
    return m_replays.pause(recordID);
}

StoreStatus DeviceService::continueReplay(const QString& recordID)
{
    return m_replays.goOn(recordID);
}

StoreStatus DeviceService::stopReplay(const QString& recordID)
{
    return m_replays.stop(recordID);
}

std::optional<Replays::Position> DeviceService::replayPosition(const QString& recordID) const
{
    return m_replays.position(recordID);
}

} // namespace ZelkoRecorder
