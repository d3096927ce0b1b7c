#include "columnheaderview_p.h"

#include <zelkoguibase/recordlist/columnmenu.h>
#include <zelkoguibase/recordlist/sortmenu.h>

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTableView>

#include <algorithm>

namespace ZelkoGUI {

namespace {

constexpr int widthStep = 16;

} // namespace

// The mouse sorts without taking the keys away from the rows.
ColumnHeaderView::ColumnHeaderView(QTableView* table)
    : QHeaderView(Qt::Horizontal, table)
    , m_table(table)
{
    setHighlightSections(true);
    setSectionsClickable(true);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(tr("Columns"));
    connect(this, &QHeaderView::sortIndicatorChanged, this, &ColumnHeaderView::describe);
}

ColumnHeaderView::~ColumnHeaderView() = default;

// The base class would paint anew whatever is announced.
void ColumnHeaderView::setModel(QAbstractItemModel* model)
{
    m_look.forget();
    if (this->model() != nullptr) {
        disconnect(this->model(), &QAbstractItemModel::headerDataChanged, this, nullptr);
    }
    QHeaderView::setModel(model);
    if (model != nullptr) {
        disconnect(model, &QAbstractItemModel::headerDataChanged, this, nullptr);
        connect(model, &QAbstractItemModel::headerDataChanged, this, &ColumnHeaderView::sectionsAnnounced);
    }
}

// Thousands of announcements may come in one turn of the event loop, before anything is painted.
void ColumnHeaderView::sectionsAnnounced()
{
    if (!m_announced) {
        m_announced = true;
        QMetaObject::invokeMethod(this, &ColumnHeaderView::showChanges, Qt::QueuedConnection);
    }
}

void ColumnHeaderView::showChanges()
{
    m_announced = false;
    const QList<int> sections = model() != nullptr ? m_look.changes(*model()) : QList<int>();
    for (const int section : sections) {
        headerDataChanged(orientation(), section, section);
    }
}

int ColumnHeaderView::chosenColumn() const
{
    if (m_chosen >= 0 && m_chosen < count() && !isSectionHidden(m_chosen)) {
        return m_chosen;
    }
    return logicalIndex(shownBeside(-1, 1));
}

// The next shown section in that direction; that one itself if there is none.
int ColumnHeaderView::shownBeside(int visual, int by) const
{
    for (int next = visual + by; next >= 0 && next < count(); next += by) {
        if (!isSectionHidden(logicalIndex(next))) {
            return next;
        }
    }
    return visual;
}

QRect ColumnHeaderView::sectionRect(int section) const
{
    return {sectionViewportPosition(section), 0, sectionSize(section), viewport()->height()};
}

QVariant ColumnHeaderView::inputMethodQuery(Qt::InputMethodQuery query) const
{
    return query == Qt::ImCursorRectangle && chosenColumn() >= 0 ? QVariant(sectionRect(chosenColumn()))
                                                                 : QHeaderView::inputMethodQuery(query);
}

// In the colour of the text, since what styles draw around what has the keys is hardly seen on a dark header.
void ColumnHeaderView::paintSection(QPainter* painter, const QRect& rect, int section) const
{
    painter->save();
    QHeaderView::paintSection(painter, rect, section);
    painter->restore();
    if (hasFocus() && section == chosenColumn()) {
        painter->save();
        painter->setPen(palette().color(QPalette::ButtonText));
        painter->drawRect(rect.adjusted(1, 1, -3, -2));
        painter->restore();
    }
}

// What it does not take goes on to the table.
void ColumnHeaderView::keyPressEvent(QKeyEvent* event)
{
    event->setAccepted(chosenColumn() >= 0 && takeKey(event->key(), event->modifiers() & ~Qt::KeypadModifier));
}

bool ColumnHeaderView::takeKey(int key, Qt::KeyboardModifiers modifiers)
{
    const int forward = isRightToLeft() ? -1 : 1;
    switch (key) {
    case Qt::Key_Left:
        return step(-forward, modifiers);
    case Qt::Key_Right:
        return step(forward, modifiers);
    case Qt::Key_Home:
        return goTo(shownBeside(-1, 1), modifiers);
    case Qt::Key_End:
        return goTo(shownBeside(count(), -1), modifiers);
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        sort();
        return true;
    case Qt::Key_Down:
        if (modifiers == Qt::AltModifier) {
            openMenu(sectionRect(chosenColumn()).bottomLeft());
            return true;
        }
        return false;
    default:
        return false;
    }
}

bool ColumnHeaderView::goTo(int visual, Qt::KeyboardModifiers modifiers)
{
    if (modifiers != Qt::NoModifier) {
        return false;
    }
    choose(logicalIndex(visual));
    return true;
}

bool ColumnHeaderView::step(int by, Qt::KeyboardModifiers modifiers)
{
    const int beside = shownBeside(visualIndex(chosenColumn()), by);
    if (modifiers == Qt::ControlModifier) {
        moveChosen(beside);
    } else if (modifiers == Qt::ShiftModifier) {
        widenChosen(isRightToLeft() ? -by : by);
    } else {
        return goTo(beside, modifiers);
    }
    return true;
}

void ColumnHeaderView::moveChosen(int visual)
{
    const int column = chosenColumn();
    if (sectionsMovable()) {
        moveSection(visualIndex(column), visual);
    }
    choose(column);
}

void ColumnHeaderView::widenChosen(int steps)
{
    const int column = chosenColumn();
    if (sectionResizeMode(column) == Interactive) {
        resizeSection(column, std::max(minimumSectionSize(), sectionSize(column) + steps * widthStep));
    }
    choose(column);
}

void ColumnHeaderView::choose(int section)
{
    m_chosen = section;
    bringIntoSight();
    describe();
    viewport()->update();
}

void ColumnHeaderView::sort()
{
    if (!sectionsClickable() || !isSortIndicatorShown()) {
        return;
    }
    const int column = chosenColumn();
    const bool turns = sortIndicatorSection() == column;
    setSortIndicator(column,
                     turns && sortIndicatorOrder() == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder);
}

// A list without rows can be scrolled sideways, too, but has no cell that could be asked for.
void ColumnHeaderView::bringIntoSight()
{
    if (chosenColumn() < 0) {
        return;
    }
    const QRect rect = sectionRect(chosenColumn());
    if (rect.left() < 0 || rect.right() >= viewport()->width()) {
        const bool byColumns = m_table->horizontalScrollMode() == QAbstractItemView::ScrollPerItem;
        int hidden = 0;
        for (int visual = 0; visual < visualIndex(chosenColumn()); ++visual) {
            hidden += isSectionHidden(logicalIndex(visual)) ? 1 : 0;
        }
        m_table->horizontalScrollBar()->setValue(byColumns ? visualIndex(chosenColumn()) - hidden
                                                           : sectionPosition(chosenColumn()));
    }
}

// For those who cannot see the frame.
void ColumnHeaderView::describe()
{
    const int column = chosenColumn();
    if (column < 0 || model() == nullptr) {
        return;
    }
    const QString name = model()->headerData(column, Qt::Horizontal).toString();
    if (sortIndicatorSection() != column) {
        setAccessibleDescription(name);
    } else {
        setAccessibleDescription(sortIndicatorOrder() == Qt::AscendingOrder ? tr("%1, sorted ascending").arg(name)
                                                                            : tr("%1, sorted descending").arg(name));
    }
}

void ColumnHeaderView::focusInEvent(QFocusEvent* event)
{
    QHeaderView::focusInEvent(event);
    choose(chosenColumn());
}

void ColumnHeaderView::focusOutEvent(QFocusEvent* event)
{
    QHeaderView::focusOutEvent(event);
    viewport()->update();
}

void ColumnHeaderView::contextMenuEvent(QContextMenuEvent* event)
{
    openMenu(event->reason() == QContextMenuEvent::Keyboard ? sectionRect(chosenColumn()).bottomLeft() : event->pos());
}

// Somebody else's menu opens by the same keys as it does by the mouse.
void ColumnHeaderView::openMenu(const QPoint& place)
{
    if (contextMenuPolicy() == Qt::CustomContextMenu) {
        Q_EMIT customContextMenuRequested(place);
    } else if (contextMenuPolicy() == Qt::DefaultContextMenu) {
        openOwnMenu(place);
    }
}

void ColumnHeaderView::openOwnMenu(const QPoint& place)
{
    if (m_menu == nullptr) {
        makeMenu();
    }
    QList<int> columns;
    for (int visual = 0; visual < count(); ++visual) {
        columns.append(logicalIndex(visual));
    }
    m_sortMenu->setColumns(columns);
    m_columnMenu->setColumns(columns);
    m_menu->popup(viewport()->mapToGlobal(place));
}

void ColumnHeaderView::makeMenu()
{
    m_menu = new QMenu(this);
    m_menu->setObjectName(QStringLiteral("ColumnHeaderMenu"));
    m_sortMenu = new SortMenu(m_table);
    m_columnMenu = new ColumnMenu(m_table);
    m_menu->addMenu(m_sortMenu);
    m_menu->addMenu(m_columnMenu);
    connect(m_columnMenu, &ColumnMenu::resetWanted, this, &ColumnHeaderView::resetWanted);
}

} // namespace ZelkoGUI
