#include <recorder/store/recordedits.h>

#include <recorder/store/recordrepair.h>

#include <algorithm>

namespace ZelkoRecorder {

using ZELKO_XML::BookmarkEntry;
using ZELKO_XML::HistoryEntry;
using ZELKO_XML::ZELKO_RecordData;

namespace {

// Larger metadata is not read again; some is left for what stands around the texts.
constexpr qsizetype mostBytes = 31 * 1024 * 1024;

// At most: a control character becomes six letters of the file, and so does a quotation mark.
constexpr qsizetype bytesPerUnit = 6;
constexpr qsizetype bytesPerEntry = 256;
constexpr qsizetype bytesPerIndexEntry = 512;

qsizetype mostBytesOf(const ZELKO_RecordData& record)
{
    qsizetype units = record.GetRecordName().size();
    for (const BookmarkEntry& bookmark : record.GetBookmarkEntry()) {
        units += bookmark.GetBookmark().size();
    }
    for (const HistoryEntry& comment : record.GetHistoryEntry()) {
        units += comment.GetHistoryEntry().size();
    }
    return units * bytesPerUnit + (record.GetBookmarkEntry().size() + record.GetHistoryEntry().size()) * bytesPerEntry +
           record.GetIndexEntry().size() * bytesPerIndexEntry;
}

StoreStatus check(const QVector<BookmarkEntry>& bookmarks)
{
    const auto isLong = [](const BookmarkEntry& bookmark) { return bookmark.GetBookmark().size() > longestRecordText; };
    if (bookmarks.size() > mostBookmarks) {
        return StoreStatus::TooMany;
    }
    return std::any_of(bookmarks.begin(), bookmarks.end(), isLong) ? StoreStatus::TooLong : StoreStatus::Done;
}

// Each of `gone` takes one away, as the same bookmark may stand there twice.
StoreStatus takeAway(QVector<BookmarkEntry>& bookmarks, const QVector<BookmarkEntry>& gone)
{
    for (const BookmarkEntry& bookmark : gone) {
        if (!bookmarks.removeOne(bookmark)) {
            return StoreStatus::UnknownEntry;
        }
    }
    return StoreStatus::Done;
}

bool hasComment(const QVector<HistoryEntry>& history, quint64 key)
{
    return std::any_of(history.begin(), history.end(),
                       [key](const HistoryEntry& comment) { return comment.GetTimestamp() == key; });
}

StoreStatus removeComment(QVector<HistoryEntry>& history, quint64 key)
{
    const auto removed = history.removeIf([key](const HistoryEntry& comment) { return comment.GetTimestamp() == key; });
    return removed > 0 ? StoreStatus::Done : StoreStatus::UnknownEntry;
}

} // namespace

void appendComment(ZELKO_RecordData& record, const QString& text, quint64 now)
{
    while (hasComment(std::as_const(record).GetHistoryEntry(), now)) {
        ++now;
    }
    HistoryEntry comment;
    comment.SetTimestamp(now);
    comment.SetHistoryEntry(text);
    record.AppendHistoryEntry(comment);
}

StoreStatus applyEdit(ZELKO_RecordData& record, const RecordEdit& edit)
{
    ZELKO_RecordData edited = record;
    if (const StoreStatus status = edit(edited); status != StoreStatus::Done) {
        return status;
    }
    if (mostBytesOf(edited) > std::max(mostBytes, mostBytesOf(record))) {
        return StoreStatus::TooMany;
    }
    record = edited;
    return StoreStatus::Done;
}

RecordEdit commentEdit(const QString& comment)
{
    return [comment](ZELKO_RecordData& record) {
        if (comment.size() > longestRecordName) {
            return StoreStatus::TooLong;
        }
        record.SetRecordName(comment);
        return StoreStatus::Done;
    };
}

RecordEdit deletableEdit(bool deletable)
{
    return [deletable](ZELKO_RecordData& record) {
        if (isUnfinished(record)) {
            return StoreStatus::InUse;
        }
        record.SetDeletable(deletable);
        return StoreStatus::Done;
    };
}

RecordEdit bookmarksEdit(const QVector<BookmarkEntry>& bookmarks)
{
    return [bookmarks](ZELKO_RecordData& record) {
        const StoreStatus status = check(bookmarks);
        record.SetBookmarkEntry(bookmarks);
        return status;
    };
}

RecordEdit bookmarksDeletion(const QVector<BookmarkEntry>& bookmarks)
{
    return [bookmarks](ZELKO_RecordData& record) {
        if (bookmarks.size() > mostBookmarks) {
            return StoreStatus::TooMany;
        }
        QVector<BookmarkEntry> kept = std::as_const(record).GetBookmarkEntry();
        const StoreStatus status = takeAway(kept, bookmarks);
        if (!bookmarks.isEmpty()) {
            record.SetBookmarkEntry(kept);
        }
        return status;
    };
}

RecordEdit historyAddition(const QString& text, quint64 now)
{
    return [text, now](ZELKO_RecordData& record) {
        if (text.size() > longestRecordText) {
            return StoreStatus::TooLong;
        }
        if (std::as_const(record).GetHistoryEntry().size() >= mostComments) {
            return StoreStatus::TooMany;
        }
        appendComment(record, text, now);
        return StoreStatus::Done;
    };
}

RecordEdit historyRemoval(quint64 key)
{
    return [key](ZELKO_RecordData& record) {
        QVector<HistoryEntry> kept = std::as_const(record).GetHistoryEntry();
        const StoreStatus status = removeComment(kept, key);
        record.SetHistoryEntry(kept);
        return status;
    };
}

} // namespace ZelkoRecorder
