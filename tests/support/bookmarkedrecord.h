#pragma once

#include "storedrecord.h"
#include "testbookmarks.h"

namespace ZelkoTest {

/// A record at rest, so many seconds long, from the begin of the records of tests, with two bookmarks.
inline ZELKO_XML::ZELKO_RecordData recordWithBookmarks(const QString& id, quint64 seconds)
{
    ZELKO_XML::ZELKO_RecordData data = finishedRecord(id);
    data.SetStartTime(recordBegin);
    data.SetStopTime(recordBegin + seconds * 1'000'000);
    data.SetIndexEntry({indexEntry(data.GetStartTime(), 0), indexEntry(data.GetStopTime(), 4000)});
    data.SetBookmarkEntry(twoBookmarks);
    return data;
}

} // namespace ZelkoTest
