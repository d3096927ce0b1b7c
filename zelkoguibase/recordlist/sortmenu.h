#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QList>
#include <QMenu>

class QActionGroup;
class QTableView;

namespace ZelkoGUI {

/// Sorts a table without a mouse: one action per column and one per direction, with a mark at those that are in force.
class ZELKOGUIBASE_EXPORT SortMenu : public QMenu
{
    Q_OBJECT

public:
    /// Without actions so far. `table` has sorting switched on and outlives the menu.
    explicit SortMenu(QTableView* table);
    ~SortMenu() override;

    /// Offers these columns of the table's model, in this order.
    void setColumns(const QList<int>& columns);

private:
    void sort();
    void update();

    QTableView* const m_table;
    QActionGroup* m_columns;
    QActionGroup* m_directions;
};

} // namespace ZelkoGUI
