#pragma once

#include <recorder/store/storestatus.h>

#include <zelkobase/data/zelko_recorddata.h>

#include <functional>

namespace ZelkoRecorder {

/// A change of what is stored about a record: makes it to the record, or says why not. May be called on any thread.
using RecordEdit = std::function<StoreStatus(ZELKO_XML::ZELKO_RecordData&)>;

/// @name Bounds, in UTF-16 units and in entries
/// @{
inline constexpr qsizetype longestRecordName = 1024;
inline constexpr qsizetype longestRecordText = 10'000;
inline constexpr qsizetype mostBookmarks = 10'000;
inline constexpr qsizetype mostComments = 10'000;
/// @}

/// Makes an edit, or leaves the record just as it was: also where its metadata would become too large to be read again,
/// which is `TooMany`.
StoreStatus applyEdit(ZELKO_XML::ZELKO_RecordData& record, const RecordEdit& edit);

/// Adds a comment to a record's history, at `now` in microseconds since the epoch, or the next microsecond that no
/// other comment of the record has.
void appendComment(ZELKO_XML::ZELKO_RecordData& record, const QString& text, quint64 now);

/// @name The edits that clients may ask for. Texts may hold any characters
/// @{

/// A record's comment is the name that lists show. It may be empty.
RecordEdit commentEdit(const QString& comment);

/// `InUse` for a record that is being recorded: that one is protected until its end.
RecordEdit deletableEdit(bool deletable);

/// The record has these bookmarks and no others from now on: a client sends the whole list as it has become by its
/// edits. They are kept in the order given. None at all is a list, too.
RecordEdit bookmarksEdit(const QVector<ZELKO_XML::BookmarkEntry>& bookmarks);

/// Takes away bookmarks that are equal to these in time and text. `UnknownEntry` if one of these is not there. None at
/// all changes nothing.
RecordEdit bookmarksDeletion(const QVector<ZELKO_XML::BookmarkEntry>& bookmarks);

/// As `appendComment`. The timestamp that it gets is the key by which a comment is removed.
RecordEdit historyAddition(const QString& text, quint64 now);

RecordEdit historyRemoval(quint64 key);
/// @}

} // namespace ZelkoRecorder
