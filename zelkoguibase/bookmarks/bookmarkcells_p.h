#pragma once

#include <zelkobase/data/bookmarkentry.h>

#include <QVariant>

namespace ZelkoGUI {

class BookmarkTimes;

/// What stands in the cells and headers of a table of bookmarks, by role; nothing for a role that has no content.
class BookmarkCells
{
public:
    using Entry = ZELKO_XML::BookmarkEntry;

    /// `times` is from when to when the record goes. Times are shown without their date if it does so within one day.
    static QVariant time(const Entry& entry, const BookmarkTimes& times, bool isOutOfRange, int role);
    static QVariant text(const Entry& entry, int role);

    static QVariant title(int column, int role);

    /// Of the vertical header: what adds a bookmark, or what deletes one.
    static QVariant button(bool adds, int role);
};

} // namespace ZelkoGUI
