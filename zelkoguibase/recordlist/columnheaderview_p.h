#pragma once

#include <zelkoguibase/recordlist/headerlook_p.h>

#include <QHeaderView>

class QMenu;
class QTableView;

namespace ZelkoGUI {

class ColumnMenu;
class SortMenu;

/// The horizontal header of a table, which keys can work as well as a mouse. It is reached by the Tab key and shows
/// which of its columns they are for:
/// - Left, Right, Home and End go to another column,
/// - Space, Enter and Return sort by the column, and the other way round if the table is sorted by it already,
/// - with Ctrl, Left and Right move the column; with Shift, they make it narrower and wider,
/// - the menu key and Alt+Down open the menu that the right mouse button opens: it sorts, and shows and hides columns.
///
/// Keys that sort, move or resize do nothing where a click or a drag would not, either: in a table that is not sorted,
/// with columns that cannot be moved, and with those that are of a fixed size or size themselves.
///
/// Sections are painted anew when they look different, and not whenever the model announces them: a filtered list
/// announces all of them with each change of its rows. What was announced is looked at once, when the event loop turns.
///
/// With the policy of a custom context menu that is asked for instead, by all of these; with any other there is none.
class ColumnHeaderView final : public QHeaderView
{
    Q_OBJECT

public:
    /// To be set as the horizontal header of `table`, which owns it.
    explicit ColumnHeaderView(QTableView* table);
    ~ColumnHeaderView() override;

    /// The column that keys are for; -1 if there is none.
    int chosenColumn() const;

    void setModel(QAbstractItemModel* model) override;

    /// Where the chosen column stands, for whoever opens something there by a key.
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

Q_SIGNALS:
    /// The columns are to be as they were at first.
    void resetWanted();

protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void sectionsAnnounced();
    void showChanges();
    bool takeKey(int key, Qt::KeyboardModifiers modifiers);
    bool goTo(int visual, Qt::KeyboardModifiers modifiers);
    bool step(int by, Qt::KeyboardModifiers modifiers);
    void moveChosen(int visual);
    void widenChosen(int steps);
    int shownBeside(int visual, int by) const;
    QRect sectionRect(int section) const;
    void choose(int section);
    void sort();
    void bringIntoSight();
    void describe();
    void openMenu(const QPoint& place);
    void openOwnMenu(const QPoint& place);
    void makeMenu();

    QTableView* const m_table;
    int m_chosen = -1;
    bool m_announced = false; // since the last look
    HeaderLook m_look;
    QMenu* m_menu = nullptr;
    SortMenu* m_sortMenu = nullptr;
    ColumnMenu* m_columnMenu = nullptr;
};

} // namespace ZelkoGUI
