#pragma once

#include <recorder/store/devicestore.h>
#include <recorder/store/storestatus.h>

namespace ZelkoRecorder {

/// What came of a change: how it ended and, if it was done, the record as it is on disk now; null otherwise.
struct RecordChange
{
    StoreStatus status = StoreStatus::Done;
    RecordPointer record;
};

/// Changes what is stored about one record at rest, at the wish of clients. With `Done` the change is durable; with
/// anything else the record is as it was.
///
/// It reads the record, changes it and saves it: whoever calls it sees to it that nobody else writes the same record
/// meanwhile. Everything blocks for as long as the disk takes. Times are microseconds since the epoch. Texts may hold
/// any characters. A record that is still being recorded gives `InUse`.
class RecordChanges
{
public:
    /// @name Bounds, in UTF-16 units and in entries
    /// @{
    static constexpr qsizetype longestName = 1024;
    static constexpr qsizetype longestText = 4096;
    static constexpr qsizetype mostBookmarks = 10'000;
    static constexpr qsizetype mostComments = 10'000;
    /// @}

    explicit RecordChanges(const DeviceStore& store);

    /// A record's comment is the name that lists show. It may be empty.
    RecordChange setComment(const QString& recordID, const QString& comment) const;

    RecordChange setDeletable(const QString& recordID, bool deletable) const;

    /// The record has these bookmarks and no others from now on: a client sends the whole list as it has become by its
    /// edits. They are kept in the order given. None at all is a list, too.
    RecordChange setBookmarks(const QString& recordID, const QVector<ZELKO_XML::BookmarkEntry>& bookmarks) const;

    /// Takes away bookmarks that are equal to these in time and text. `UnknownEntry`, with all of them kept, if one of
    /// these is not there. None at all changes nothing.
    RecordChange deleteBookmarks(const QString& recordID, const QVector<ZELKO_XML::BookmarkEntry>& bookmarks) const;

    /// Adds a comment to the history. Its timestamp is `now`, or the next microsecond that no other comment of the
    /// record has: it is the key by which it is removed.
    RecordChange addHistory(const QString& recordID, const QString& text, quint64 now) const;

    RecordChange removeHistory(const QString& recordID, quint64 key) const;

private:
    template <typename Edit>
    RecordChange change(const QString& recordID, const Edit& edit) const;

    const DeviceStore m_store;
};

/// Adds a comment to a record's history, at `now` in microseconds since the epoch, or the next microsecond that no
/// other comment of the record has.
void appendComment(ZELKO_XML::ZELKO_RecordData& record, const QString& text, quint64 now);

} // namespace ZelkoRecorder
