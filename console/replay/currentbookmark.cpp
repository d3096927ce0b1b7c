#include <console/replay/currentbookmark.h>

#include <console/replay/bookmarktableview.h>

#include <chartcontrols/vcreplaybar.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>

#include <QItemSelectionModel>

namespace ZelkoConsole {

using ZelkoGUI::BookmarkModel;

// A list that is another takes the current row from the table, and is on the bar a moment later.
CurrentBookmark::CurrentBookmark(VCReplayBar& bar, BookmarkTableView& table, BookmarkModel& bookmarks, QObject* parent)
    : QObject(parent)
    , m_bar(bar)
    , m_table(table)
    , m_bookmarks(bookmarks)
{
    connect(&bookmarks, &QAbstractItemModel::modelReset, this, [this] { m_soon.ask(); });
    connect(&bar, &VCReplayBar::signalCurrentMarkerChanged, this, &CurrentBookmark::followBar);
    connect(table.selectionModel(), &QItemSelectionModel::currentRowChanged, this, &CurrentBookmark::followTable);
    connect(&table, &QAbstractItemView::pressed, this, &CurrentBookmark::followTable); // be it the current one already
}

CurrentBookmark::~CurrentBookmark() = default;

// A row that is the current one already keeps what is selected beside it. One that the bar is ahead of is not there
// yet.
void CurrentBookmark::followBar()
{
    const int row = m_bar.GetCurrentMarker() - VCReplayBar::FirstBookmarkMarker;
    const QModelIndex before = m_table.currentIndex();
    if (row >= 0 && row < m_bookmarks.entryCount() && row != before.row()) {
        m_table.setCurrentIndex(m_bookmarks.index(row, before.isValid() ? before.column() : BookmarkModel::TextColumn));
    }
}

void CurrentBookmark::followTable(const QModelIndex& current)
{
    if (current.isValid() && m_table.selectionModel()->isSelected(current)) {
        m_bar.SetCurrentMarker(VCReplayBar::FirstBookmarkMarker + current.row());
    }
}

} // namespace ZelkoConsole
