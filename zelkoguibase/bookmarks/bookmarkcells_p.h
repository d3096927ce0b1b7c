#pragma once

#include <zelkobase/data/bookmarkentry.h>
#include <zelkobase/data/recordextent.h>

#include <QDateTime>
#include <QVariant>

namespace ZelkoGUI {

/// What stands in the cells and headers of a table of bookmarks, by role; nothing for a role that has no content.
class BookmarkCells
{
public:
    using Entry = ZELKO_XML::BookmarkEntry;

    BookmarkCells() { setExtent({0, 0}); }

    /// From when to when the record goes. Times are shown without their date if it does so within one day.
    void setExtent(const ZELKO_XML::RecordExtent& extent);

    /// The same to the millisecond, in local time.
    const QDateTime& first() const { return m_first; }
    const QDateTime& last() const { return m_last; }

    QVariant time(const Entry& entry, bool isOutOfRange, int role) const;
    static QVariant text(const Entry& entry, int role);

    static QVariant title(int column, int role);

    /// Of the vertical header: what adds a bookmark, or what deletes one.
    static QVariant button(bool adds, int role);

    static QString longTime(const QDateTime& time);

private:
    QString shortTime(const QDateTime& time) const;
    QString toolTip(const Entry& entry, bool isOutOfRange) const;

    ZELKO_XML::RecordExtent m_extent{0, 0};
    QDateTime m_first;
    QDateTime m_last;
};

} // namespace ZelkoGUI
