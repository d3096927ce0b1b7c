#pragma once

#include "testbookmarks.h"

#include <chartcontrols/vcreplaybar.h>

/// The bookmarks of a bar, as `bookmarkTexts` gives them.
inline QStringList bookmarksOn(const VCReplayBar& bar)
{
    QStringList texts;
    for (const BookmarkType& bookmark : bar.GetBookmarks()) {
        texts.append(bookmarkTexts({makeBookmark(static_cast<quint64>(bookmark.time), bookmark.text)}));
    }
    return texts;
}
