#include "bookmarktimes_p.h"

#include <observerbase/datetime.h>
#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>

namespace ZelkoGUI {

using Vorn::DateTime;

namespace {

QString longFormat()
{
    return QStringLiteral("yyyy-MM-dd hh:mm:ss:zzz");
}

} // namespace

void BookmarkTimes::setExtent(const ZELKO_XML::RecordExtent& extent)
{
    m_extent = extent;
    m_first = DateTime::fromMicroseconds(extent.start);
    m_last = DateTime::fromMicroseconds(extent.stop);
}

// The limits hold for a record that is not finished too: what is typed is not behind what was recorded by now.
bool BookmarkTimes::accepts(const QDateTime& time) const
{
    return time.isValid() && time >= m_first && time <= m_last;
}

// Past the end of the record it is the start as well: a position that is not of this record says nothing about it.
quint64 BookmarkTimes::startUnlessWithin(quint64 time) const
{
    const bool isWithin = time >= DateTime::toMicroseconds(m_first) && time <= DateTime::toMicroseconds(m_last);
    return isWithin ? time : m_extent.start;
}

QString BookmarkTimes::timeFormat(const QDateTime& first, const QDateTime& last)
{
    return first.date() == last.date() ? QStringLiteral("hh:mm:ss:zzz") : longFormat();
}

QString BookmarkTimes::longTime(const QDateTime& time)
{
    return time.toString(longFormat());
}

void BookmarkTimes::traceRefused(const QDateTime& time) const
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceWarning)) {
        _Q_Trace(QStringLiteral("BookmarkModel::setTime(%1) - invalid (min=%2,max=%3)")
                     .arg(longTime(time), longTime(m_first), longTime(m_last)),
                 __FILE__, __LINE__);
    }
}

} // namespace ZelkoGUI
