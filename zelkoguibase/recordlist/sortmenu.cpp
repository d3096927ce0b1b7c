#include <zelkoguibase/recordlist/sortmenu.h>

#include <QActionGroup>
#include <QHeaderView>
#include <QTableView>

namespace ZelkoGUI {
namespace {

void addChoice(QMenu& menu, QActionGroup* group, const QString& text, int data)
{
    QAction* const action = group->addAction(menu.addAction(text));
    action->setCheckable(true);
    action->setData(data);
}

void check(const QActionGroup& group, int data)
{
    for (QAction* const action : group.actions()) {
        action->setChecked(action->data().toInt() == data);
    }
}

} // namespace

SortMenu::SortMenu(QTableView* table)
    : QMenu(tr("&Sort By"), table)
    , m_table(table)
    , m_columns(new QActionGroup(this))
    , m_directions(new QActionGroup(this))
{
    for (QActionGroup* const group : {m_columns, m_directions}) {
        connect(group, &QActionGroup::triggered, this, &SortMenu::sort);
    }
    connect(table->horizontalHeader(), &QHeaderView::sortIndicatorChanged, this, &SortMenu::update);
}

SortMenu::~SortMenu() = default;

void SortMenu::setColumns(const QList<int>& columns)
{
    clear();
    for (const int column : columns) {
        const QString name = m_table->model()->headerData(column, Qt::Horizontal).toString();
        addChoice(*this, m_columns, name, column);
    }
    addSeparator();
    addChoice(*this, m_directions, tr("&Ascending"), Qt::AscendingOrder);
    addChoice(*this, m_directions, tr("D&escending"), Qt::DescendingOrder);
    update();
}

void SortMenu::sort()
{
    const QAction* const column = m_columns->checkedAction();
    const QAction* const direction = m_directions->checkedAction();
    if (column && direction) {
        m_table->sortByColumn(column->data().toInt(), static_cast<Qt::SortOrder>(direction->data().toInt()));
    }
}

void SortMenu::update()
{
    const QHeaderView& header = *m_table->horizontalHeader();
    check(*m_columns, header.sortIndicatorSection());
    check(*m_directions, header.sortIndicatorOrder());
}

} // namespace ZelkoGUI
