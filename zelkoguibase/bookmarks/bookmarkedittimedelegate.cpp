#include <zelkoguibase/bookmarks/bookmarkedittimedelegate.h>

#include "bookmarktimes_p.h"

#include <zelkoguibase/bookmarks/bookmarkmodel.h>

#include <QAbstractProxyModel>
#include <QDateTimeEdit>

#include <algorithm>

namespace ZelkoGUI {

namespace {

const BookmarkModel* bookmarkModelOf(const QModelIndex& index)
{
    const QAbstractItemModel* model = index.model();
    if (const auto* const proxy = qobject_cast<const QAbstractProxyModel*>(model)) {
        model = proxy->sourceModel();
    }
    return qobject_cast<const BookmarkModel*>(model);
}

void setRange(QDateTimeEdit& editor, const BookmarkModel& bookmarks, const QDateTime& time)
{
    QDateTime first = bookmarks.minDateTime();
    QDateTime last = bookmarks.maxDateTime();
    if (time.isValid()) {
        first = std::min(first, time);
        last = std::max(last, time);
    }
    editor.setDateTimeRange(first, last);
    editor.setDisplayFormat(BookmarkTimes::timeFormat(first, last));
}

} // namespace

BookmarkEditTimeDelegate::BookmarkEditTimeDelegate(QObject* parent)
    : QStyledItemDelegate(parent)
{}

BookmarkEditTimeDelegate::~BookmarkEditTimeDelegate() = default;

QWidget* BookmarkEditTimeDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                                const QModelIndex& index) const
{
    QWidget* const editor = QStyledItemDelegate::createEditor(parent, option, index);
    auto* const timeEditor = qobject_cast<QDateTimeEdit*>(editor);
    const BookmarkModel* const bookmarks = bookmarkModelOf(index);
    if (timeEditor && bookmarks) {
        setRange(*timeEditor, *bookmarks, index.data(Qt::EditRole).toDateTime());
    }
    return editor;
}

} // namespace ZelkoGUI
