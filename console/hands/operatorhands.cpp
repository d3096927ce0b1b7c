#include <console/hands/operatorhands.h>

#include <QAbstractButton>
#include <QApplication>
#include <QContextMenuEvent>
#include <QEnterEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QScrollBar>
#include <QTableView>
#include <QTest>

namespace ZelkoConsole::operatorhands {

void clickHeader(QTableView& table, int column)
{
    QHeaderView& header = *table.horizontalHeader();
    table.horizontalScrollBar()->setValue(header.sectionPosition(column));
    const QPoint middle(header.sectionViewportPosition(column) + header.sectionSize(column) / 2, header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, Qt::NoModifier, middle);
    table.horizontalScrollBar()->setValue(0);
}

void clickRow(QTableView& table, int row, Qt::KeyboardModifiers modifiers)
{
    const int column = table.horizontalHeader()->logicalIndexAt(1);
    const QModelIndex index = table.model()->index(row, column);
    table.scrollTo(index);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, modifiers, table.visualRect(index).center());
}

void type(QWidget& field, const QString& text)
{
    field.setFocus();
    QTest::keyClicks(&field, text);
}

void toggle(QAbstractButton& button)
{
    button.setFocus();
    QTest::keyClick(&button, Qt::Key_Space);
}

void pressMenuKey()
{
    QWidget& focused = *QApplication::focusWidget();
    const QPoint place = focused.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, place, focused.mapToGlobal(place));
    QCoreApplication::sendEvent(&focused, &event);
}

void enter(QWidget& widget)
{
    const QPointF place = widget.rect().center();
    QEnterEvent event(place, widget.mapTo(widget.window(), place), widget.mapToGlobal(place));
    QCoreApplication::sendEvent(&widget, &event);
}

void rest(QWidget& widget, const QPoint& place)
{
    QHelpEvent event(QEvent::ToolTip, place, widget.mapToGlobal(place));
    QCoreApplication::sendEvent(&widget, &event);
}

} // namespace ZelkoConsole::operatorhands
