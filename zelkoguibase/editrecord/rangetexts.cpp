#include "rangetexts_p.h"

#include "../bookmarks/bookmarktimes_p.h"

#include <zelkoguibase/bookmarks/bookmarkmodel.h>

namespace ZelkoGUI {

QString rangeText(quint64 start, quint64 stop)
{
    const QDateTime first = BookmarkModel::datetimeFromEntry(start);
    const QDateTime last = BookmarkModel::datetimeFromEntry(stop);
    const QString format = BookmarkTimes::timeFormat(first, last);
    return first.toString(format) + QStringLiteral(" ... ") + last.toString(format);
}

// Each end is cut to its millisecond first, as it is shown: the ends and the length of a range fit together then.
QString durationText(quint64 start, quint64 stop)
{
    if (start > stop) {
        return QStringLiteral("n/a");
    }
    const quint64 milliseconds = stop / 1000 - start / 1000;
    const quint64 seconds = milliseconds / 1000;
    const quint64 minutes = seconds / 60;
    const auto padded = [](quint64 number, int digits) {
        return QStringLiteral("%1").arg(number, digits, 10, QLatin1Char('0'));
    };
    return QStringLiteral("%1:%2:%3.%4")
        .arg(padded(minutes / 60, 2), padded(minutes % 60, 2), padded(seconds % 60, 2), padded(milliseconds % 1000, 3));
}

} // namespace ZelkoGUI
