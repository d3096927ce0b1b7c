#pragma once

#include <recorder/store/bytetransfer.h>
#include <recorder/store/devicestore.h>
#include <recorder/store/recordtimeline.h>

#include <QVector>

namespace ZelkoRecorder {

/// A part of a record: from `start` on, up to but without `stop`.
struct RecordRange
{
    /// What the two numbers are.
    enum class Unit {
        Times,    ///< microseconds since the epoch
        Positions ///< offsets in bytes
    };

    quint64 start;
    quint64 stop;
};

using RecordRanges = QVector<RecordRange>;

/// Copies parts of a record at rest into a new record of its own on the same device.
///
/// The parts stand one behind the other in the new record, cut between samples, each with an index entry at its begin
/// and one at its end. The new record has the format, rate and interface of the old one, its bookmarks within the
/// parts, and its history with one comment more that says where it comes from. It is at rest and deletable.
class RecordCopy
{
public:
    /// More than so many parts are refused.
    static constexpr qsizetype mostRanges = 1000;

    /// Looks at source and ranges without copying anything. Ranges that reach over the ends of the record are cut
    /// there; they must rise, not overlap, and each hold a sample. A name may be empty. `now`, in microseconds since
    /// the epoch, is the time of the comment. Blocks for as long as reading the source's metadata takes.
    RecordCopy(const DeviceStore& store, const QString& sourceID, const RecordRanges& ranges, RecordRange::Unit unit,
               const QString& name, quint64 now);

    /// What the look has found: `Done`, or why `run` is not to be called: `UnknownRecord`, `InUse` for a record that is
    /// being recorded, `Damaged`, `NotAllowed` for a raw stream, `BadRange`, `TooLong`, or `NoSpace`.
    StoreStatus status() const { return m_status; }

    /// The ID of the new record; empty if there is to be none.
    QString recordID() const;

    /// Bytes of samples to be copied.
    quint64 size() const { return m_target.GetSize(); }

    /// Makes the new record. With `Done` it is durable and stands in the store under its ID; with `Uncertain` it stands
    /// there and may not be durable; otherwise nothing of it is left. The source must not be deleted meanwhile. Blocks
    /// for as long as it takes; `watcher` may give it up.
    StoreStatus run(const ByteTransfer::Watcher& watcher = {});

    /// The new record once `run` has given `Done`.
    RecordPointer record() const;

private:
    StoreStatus prepare(const QString& sourceID, const RecordRanges& ranges, RecordRange::Unit unit);
    bool cut(const RecordRanges& ranges, RecordRange::Unit unit);
    void describe(const QString& name);
    void describePart(const RecordTimeline& timeline, const RecordRange& part);
    StoreStatus write(const ByteTransfer::Watcher& watcher) const;

    const DeviceStore m_store;
    const quint64 m_now;
    RecordPointer m_source;
    RecordRanges m_parts; // positions
    ZELKO_XML::ZELKO_RecordData m_target;
    StoreStatus m_status;
};

} // namespace ZelkoRecorder
