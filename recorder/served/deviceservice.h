#pragma once

#include <recorder/served/foreignedits.h>
#include <recorder/served/jobthread.h>
#include <recorder/served/replays.h>
#include <recorder/store/deviceclock.h>
#include <recorder/store/recordcopy.h>
#include <recorder/store/recordedits.h>

#include <atomic>
#include <functional>
#include <optional>

namespace ZelkoRecorder {

class RecordingThread;
class StoreWorker;

/// What clients of the recorder's service may ask of one device, whoever has seen to it that they may.
///
/// Any thread may call it but that of the tree, which it may have to wait for. Every operation blocks until it is done:
/// with `Done` what was changed is durable, and on its way to the tree. Changes of records are made one after the
/// other. `Ending` comes from every operation that the end of the device overtakes; once the device is gone nobody may
/// call. Times are microseconds since the epoch.
class DeviceService
{
public:
    /// Gives the records that are on the tree; may be called by any thread but that of the tree.
    using Listing = std::function<RecordPointers()>;

    using Bookmarks = QVector<ZELKO_XML::BookmarkEntry>;

    /// What makes up the device; all of it outlives the service.
    struct Parts
    {
        const DeviceStore& store;
        StoreWorker& worker;
        RecordingThread& recordings;
        ForeignEdits& foreignEdits;
        RecordUses& uses;
        Replays& replays;
        DeviceClock& clock;
    };

    DeviceService(const Parts& parts, Listing listing);
    ~DeviceService();

    /// From here on no call waits any more: those that do return soon, with `Ending`, and the copy under way is given
    /// up. Any thread.
    void beginEnding();

    /// @name Records
    /// @{
    /// Everything that is on the tree, in no order.
    RecordPointers records() const;

    /// The record as it is on disk now, but for one that is replayed, which says so. Null if there is none.
    RecordPointer record(const QString& recordID) const;

    /// Reads a record's file anew, so that the tree shows what is on disk. `UnknownRecord` if it cannot be read.
    StoreStatus synchronize(const QString& recordID);
    /// @}

    /// @name Changes, by the edits of these names. A record that is being recorded takes them all but the deletable
    /// flag, which gives `InUse` then. One whose end the disk refused, which the tree shows as damaged, gives `InUse`
    /// to them all until it is put to rest or the recorder starts again
    /// @{
    StoreStatus setComment(const QString& recordID, const QString& comment);
    StoreStatus setDeletable(const QString& recordID, bool deletable);
    StoreStatus setBookmarks(const QString& recordID, const Bookmarks& bookmarks);
    StoreStatus deleteBookmarks(const QString& recordID, const Bookmarks& bookmarks);
    StoreStatus addHistory(const QString& recordID, const QString& text);
    StoreStatus removeHistory(const QString& recordID, quint64 key);
    /// @}

    /// Copies parts of a record as RecordCopy does; `newID` is that of the new record, empty if there is none. Takes as
    /// long as the disk does; changes of records go on meanwhile, other copies of the device wait. A caller who has no
    /// more patience finds the new record on the tree.
    StoreStatus copy(const QString& recordID, const RecordRanges& ranges, RecordRange::Unit unit, const QString& name,
                     QString* newID);

    /// @name Replays, as Replays does them. But for the first one they wait for nobody, and the tree's thread may call
    /// them too
    /// @{
    StoreStatus startReplay(const QString& recordID, quint64 start, quint64 stop);
    StoreStatus pauseReplay(const QString& recordID);
    StoreStatus continueReplay(const QString& recordID);
    StoreStatus stopReplay(const QString& recordID);
    std::optional<Replays::Position> replayPosition(const QString& recordID) const;
    /// @}

    /// The device's clock: for recordings and comments that begin after it was set.
    DeviceClock& clock() { return m_clock; }

    /// What an export of the device's records needs.
    const DeviceStore& store() const { return m_store; }
    RecordUses& uses() { return m_uses; }

private:
    template <typename Ask>
    StoreStatus askWorker(const QString& recordID, const Ask& ask);
    StoreStatus edit(const QString& recordID, const RecordEdit& edit);
    std::optional<StoreStatus> editRecording(const QString& recordID, const RecordEdit& edit);
    StoreStatus runCopy(RecordCopy& copy);

    const DeviceStore m_store;
    StoreWorker& m_worker;
    RecordingThread& m_recordings;
    ForeignEdits& m_foreignEdits;
    RecordUses& m_uses;
    Replays& m_replays;
    DeviceClock& m_clock;
    const Listing m_listing;
    std::atomic<bool> m_ending = false;
    JobThread m_copier; // makes copies one after the other; goes first
};

} // namespace ZelkoRecorder
