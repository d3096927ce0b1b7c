#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QList>
#include <QMenu>

class QTableView;

namespace ZelkoGUI {

/// Shows and hides the columns of a table: one checkable action per column, and one that puts them back. The last
/// visible column cannot be hidden.
class ZELKOGUIBASE_EXPORT ColumnMenu : public QMenu
{
    Q_OBJECT

public:
    /// Without actions so far. `table` outlives the menu.
    explicit ColumnMenu(QTableView* table);
    ~ColumnMenu() override;

    /// Offers these columns of the table's model, in this order.
    void setColumns(const QList<int>& columns);

    /// Columns were shown or hidden by somebody else.
    void update();

Q_SIGNALS:
    /// The columns are to be as they were at first.
    void resetWanted();

private:
    void addColumn(int column);

    QTableView* const m_table;
};

} // namespace ZelkoGUI
