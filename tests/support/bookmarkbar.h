#pragma once

#include "barbookmarks.h"
#include "tiedbar.h"

/// A bar as tests drive it, of a recording that begins when the records of tests do, and what is read off it.
struct BookmarkBar : TiedBar
{
    static_assert(begin == static_cast<long long>(recordBegin));

    QStringList bookmarks() const { return bookmarksOn(bar); }

    /// Of each bookmark, whether a user may move it.
    QList<bool> enabled() const
    {
        QList<bool> result;
        for (int number = VCReplayBar::FirstBookmarkMarker; bar.GetMarker(number); ++number) {
            result.append(bar.GetMarker(number)->IsEnabled());
        }
        return result;
    }

    /// Sets a bookmark at the position, second 50, if the bar lets a user do so.
    void insert() { key(Qt::Key_Insert); }
};
