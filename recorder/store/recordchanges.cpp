#include <recorder/store/recordchanges.h>

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
    const auto isLong = [](const BookmarkEntry& bookmark) {
        return bookmark.GetBookmark().size() > RecordChanges::longestText;
    };
    if (bookmarks.size() > RecordChanges::mostBookmarks) {
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

RecordChanges::RecordChanges(const DeviceStore& store)
    : m_store(store)
{}

// A change that leaves the record as it is need not be saved: what it asks for is durable already.
template <typename Edit>
RecordChange RecordChanges::change(const QString& recordID, const Edit& edit) const
{
    QString error;
    const RecordPointer record = m_store.read(recordID, &error);
    if (!record) {
        return {StoreStatus::UnknownRecord, nullptr};
    }
    if (isUnfinished(*record)) {
        return {StoreStatus::InUse, nullptr};
    }
    const ZELKO_RecordData before = *record;
    const StoreStatus status = edit(*record);
    if (status != StoreStatus::Done) {
        return {status, nullptr};
    }
    if (mostBytesOf(*record) > std::max(mostBytes, mostBytesOf(before))) {
        return {StoreStatus::TooMany, nullptr};
    }
    if (*record != before && !m_store.save(*record)) {
        return {StoreStatus::DiskRefused, nullptr};
    }
    return {StoreStatus::Done, record};
}

RecordChange RecordChanges::setComment(const QString& recordID, const QString& comment) const
{
    if (comment.size() > longestName) {
        return {StoreStatus::TooLong, nullptr};
    }
    return change(recordID, [&comment](ZELKO_RecordData& record) {
        record.SetRecordName(comment);
        return StoreStatus::Done;
    });
}

RecordChange RecordChanges::setDeletable(const QString& recordID, bool deletable) const
{
    return change(recordID, [deletable](ZELKO_RecordData& record) {
        record.SetDeletable(deletable);
        return StoreStatus::Done;
    });
}

RecordChange RecordChanges::setBookmarks(const QString& recordID, const QVector<BookmarkEntry>& bookmarks) const
{
    if (const StoreStatus status = check(bookmarks); status != StoreStatus::Done) {
        return {status, nullptr};
    }
    return change(recordID, [&bookmarks](ZELKO_RecordData& record) {
        record.SetBookmarkEntry(bookmarks);
        return StoreStatus::Done;
    });
}

RecordChange RecordChanges::deleteBookmarks(const QString& recordID, const QVector<BookmarkEntry>& bookmarks) const
{
    if (bookmarks.size() > mostBookmarks) {
        return {StoreStatus::TooMany, nullptr};
    }
    return change(recordID, [&bookmarks](ZELKO_RecordData& record) {
        QVector<BookmarkEntry> kept = std::as_const(record).GetBookmarkEntry();
        const StoreStatus status = takeAway(kept, bookmarks);
        if (!bookmarks.isEmpty()) {
            record.SetBookmarkEntry(kept);
        }
        return status;
    });
}

RecordChange RecordChanges::addHistory(const QString& recordID, const QString& text, quint64 now) const
{
    if (text.size() > longestText) {
        return {StoreStatus::TooLong, nullptr};
    }
    return change(recordID, [&text, now](ZELKO_RecordData& record) {
        if (std::as_const(record).GetHistoryEntry().size() >= mostComments) {
            return StoreStatus::TooMany;
        }
        appendComment(record, text, now);
        return StoreStatus::Done;
    });
}

RecordChange RecordChanges::removeHistory(const QString& recordID, quint64 key) const
{
    return change(recordID, [key](ZELKO_RecordData& record) {
        QVector<HistoryEntry> kept = std::as_const(record).GetHistoryEntry();
        const StoreStatus status = removeComment(kept, key);
        record.SetHistoryEntry(kept);
        return status;
    });
}

} // namespace ZelkoRecorder
