#include "bookmarkcells_p.h"

#include "bookmarktimes_p.h"

#include <zelkoguibase/bookmarks/bookmarkmodel.h>

#include <QIcon>

namespace ZelkoGUI {

namespace {

// Kept for good: no icon must be destroyed behind the application.
QVariant warningIcon()
{
    static const auto* const icon = new QIcon(QStringLiteral(":/Zelko/Cfg/Warning.svg"));
    return *icon;
}

QVariant deleteIcon()
{
    static const auto* const icon = new QIcon(QStringLiteral(":/Zelko/Bookmarks/Delete.svg"));
    return *icon;
}

QVariant addIcon()
{
    static const auto* const icon = new QIcon(QStringLiteral(":/Zelko/Bookmarks/Add.svg"));
    return *icon;
}

QString problem(const BookmarkCells::Entry& entry, const BookmarkTimes& times)
{
    return times.isBefore(entry.GetTimestamp()) ? BookmarkModel::tr("timestamp to low")
                                                : BookmarkModel::tr("timestamp to high");
}

// The only markup in it is its own.
QString timeToolTip(const BookmarkCells::Entry& entry, const BookmarkTimes& times, bool isOutOfRange)
{
    const QString time = BookmarkTimes::longTime(BookmarkModel::datetimeFromEntry(entry));
    return isOutOfRange ? time + QStringLiteral("<br><b>") + problem(entry, times) + QStringLiteral("</b>") : time;
}

} // namespace

QVariant BookmarkCells::time(const Entry& entry, const BookmarkTimes& times, bool isOutOfRange, int role)
{
    const QDateTime time = BookmarkModel::datetimeFromEntry(entry);
    switch (role) {
    case Qt::DisplayRole:
        return times.shortTime(time);
    case Qt::EditRole:
        return time.isValid() ? time : times.first();
    case Qt::DecorationRole:
        return isOutOfRange ? warningIcon() : QVariant();
    case Qt::ToolTipRole:
        return timeToolTip(entry, times, isOutOfRange);
    default:
        return {};
    }
}

QVariant BookmarkCells::text(const Entry& entry, int role)
{
    const bool isText = role == Qt::DisplayRole || role == Qt::EditRole || role == Qt::ToolTipRole;
    return isText ? entry.GetBookmark() : QVariant();
}

QVariant BookmarkCells::title(int column, int role)
{
    if (role != Qt::DisplayRole || column < 0 || column >= BookmarkModel::ColumnCount) {
        return {};
    }
    return column == BookmarkModel::TimeColumn ? BookmarkModel::tr("Time") : BookmarkModel::tr("Text");
}

QVariant BookmarkCells::button(bool adds, int role)
{
    switch (role) {
    case Qt::DecorationRole:
        return adds ? addIcon() : deleteIcon();
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole: // what is a picture only says nothing to whoever cannot see it
        return adds ? BookmarkModel::tr("add a new bookmark entry") : BookmarkModel::tr("delete the bookmark entry");
    default:
        return {};
    }
}

} // namespace ZelkoGUI
