#pragma once

#include <recorder/store/devicestore.h>
#include <recorder/store/recordedits.h>

namespace ZelkoRecorder {

/// What came of a change: how it ended and, if it was done, the record as it is on disk now; null otherwise.
struct RecordChange
{
    StoreStatus status = StoreStatus::Done;
    RecordPointer record;
};

/// Changes what is stored about one record at rest, at the wish of clients. With `Done` the change is durable; with
/// `Uncertain` it is made, but may be lost when the machine goes down; with anything else the record is as it was.
///
/// It reads the record, changes it and saves it: whoever calls it sees to it that nobody else writes the same record
/// meanwhile.
class RecordChanges
{
public:
    /// More bookmarks than that are refused whole.
    static constexpr qsizetype mostBookmarks = ZelkoRecorder::mostBookmarks;

    explicit RecordChanges(const DeviceStore& store);

    /// A record that is still being recorded, or whose end is not on disk, gives `InUse`. Blocks for as long as the
    /// disk takes.
    RecordChange make(const QString& recordID, const RecordEdit& edit) const;

private:
    StoreStatus afterRefusal(const ZELKO_XML::ZELKO_RecordData& wanted) const;

    const DeviceStore m_store;
};

} // namespace ZelkoRecorder
