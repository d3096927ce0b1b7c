#include "bookmarkcells_p.h"

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

} // namespace

void BookmarkCells::setExtent(const ZELKO_XML::RecordExtent& extent)
{
    m_extent = extent;
    m_first = BookmarkModel::datetimeFromEntry(extent.start);
    m_last = BookmarkModel::datetimeFromEntry(extent.stop);
}

QVariant BookmarkCells::time(const Entry& entry, bool isOutOfRange, int role) const
{
    const QDateTime time = BookmarkModel::datetimeFromEntry(entry);
    switch (role) {
    case Qt::DisplayRole:
        return shortTime(time);
    case Qt::EditRole:
        return time.isValid() ? time : m_first;
    case Qt::DecorationRole:
        return isOutOfRange ? warningIcon() : QVariant();
    case Qt::ToolTipRole:
        return toolTip(entry, isOutOfRange);
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

QString BookmarkCells::longTime(const QDateTime& time)
{
    return time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss:zzz"));
}

QString BookmarkCells::shortTime(const QDateTime& time) const
{
    return m_first.date() == m_last.date() ? time.toString(QStringLiteral("hh:mm:ss:zzz")) : longTime(time);
}

QString BookmarkCells::toolTip(const Entry& entry, bool isOutOfRange) const
{
    QString time = longTime(BookmarkModel::datetimeFromEntry(entry));
    if (!isOutOfRange) {
        return time;
    }
    const QString problem = entry.GetTimestamp() < m_extent.start ? BookmarkModel::tr("timestamp to low")
                                                                  : BookmarkModel::tr("timestamp to high");
    return time + QStringLiteral("<br><b>") + problem + QStringLiteral("</b>");
}

} // namespace ZelkoGUI
