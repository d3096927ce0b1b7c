#pragma once

#include <console/soon.h>

#include <QObject>

class QModelIndex;
class VCReplayBar;

namespace ZelkoGUI {
class BookmarkModel;
}

namespace ZelkoConsole {

class BookmarkTableView;

/// Has the bookmark that the user chooses on a replay bar be the current one of their table, and the other way round. A
/// row that only has the keyboard's attention is not chosen: who goes through the table by Tab still moves the position
/// on the bar. GUI thread.
class CurrentBookmark : public QObject
{
    Q_OBJECT

public:
    /// `bar` and `table` show `bookmarks`, and do so for as long as this object lives.
    CurrentBookmark(VCReplayBar& bar, BookmarkTableView& table, ZelkoGUI::BookmarkModel& bookmarks,
                    QObject* parent = nullptr);
    ~CurrentBookmark() override;

private:
    void followBar();
    void followTable(const QModelIndex& current);

    VCReplayBar& m_bar;
    BookmarkTableView& m_table;
    ZelkoGUI::BookmarkModel& m_bookmarks;
    Soon m_soon{[this] { followBar(); }};
};

} // namespace ZelkoConsole
