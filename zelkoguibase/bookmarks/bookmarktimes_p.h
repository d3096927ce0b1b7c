#pragma once

#include <zelkobase/data/recordextent.h>

#include <QDateTime>
#include <QString>

namespace ZelkoGUI {

/// From when to when a record goes: in microseconds, as a bookmark is kept, and in local time to the millisecond, as
/// people see and type it. Without a record both ends are the epoch.
class BookmarkTimes
{
public:
    BookmarkTimes() { setExtent({0, 0}); }

    void setExtent(const ZELKO_XML::RecordExtent& extent);

    /// The ends, the microseconds below the millisecond cut off.
    const QDateTime& first() const { return m_first; }
    const QDateTime& last() const { return m_last; }

    /// Whether the time lies before the first microsecond of the record.
    bool isBefore(quint64 time) const { return time < m_extent.start; }

    /// Whether a bookmark may be moved to a time that was typed; not to an invalid one.
    bool accepts(const QDateTime& time) const;

    /// The time, if it lies within the record, and the first microsecond of the record otherwise.
    quint64 startUnlessWithin(quint64 time) const;

    /// How a time is written where it may lie between those two: without the date within one day.
    static QString timeFormat(const QDateTime& first, const QDateTime& last);

    /// A time of the record in that format, and one with its date.
    QString shortTime(const QDateTime& time) const { return time.toString(timeFormat(m_first, m_last)); }
    static QString longTime(const QDateTime& time);

    /// Traces, where warnings are, that a time was not accepted.
    void traceRefused(const QDateTime& time) const;

private:
    ZELKO_XML::RecordExtent m_extent{0, 0};
    QDateTime m_first;
    QDateTime m_last;
};

} // namespace ZelkoGUI
