#include <zelkoguibase/recordlist/columnmenu.h>

#include <QHeaderView>
#include <QTableView>

namespace ZelkoGUI {

ColumnMenu::ColumnMenu(QTableView* table)
    : QMenu(tr("&Columns"), table)
    , m_table(table)
{
    connect(this, &QMenu::aboutToShow, this, &ColumnMenu::update);
}

ColumnMenu::~ColumnMenu() = default;

void ColumnMenu::setColumns(const QList<int>& columns)
{
    clear();
    for (const int column : columns) {
        addColumn(column);
    }
    addSeparator();
    connect(addAction(tr("&Reset Columns")), &QAction::triggered, this, &ColumnMenu::resetWanted);
    update();
}

void ColumnMenu::addColumn(int column)
{
    QAction* const action = addAction(m_table->model()->headerData(column, Qt::Horizontal).toString());
    action->setCheckable(true);
    action->setData(column);
    connect(action, &QAction::toggled, this, [this, column](bool shown) {
        m_table->setColumnHidden(column, !shown);
        update();
    });
}

void ColumnMenu::update()
{
    const QHeaderView& header = *m_table->horizontalHeader();
    const bool onlyOneLeft = header.count() - header.hiddenSectionCount() == 1;
    for (QAction* const action : actions()) {
        if (action->isCheckable()) {
            const bool shown = !m_table->isColumnHidden(action->data().toInt());
            action->setChecked(shown);
            action->setEnabled(!(shown && onlyOneLeft));
        }
    }
}

} // namespace ZelkoGUI
