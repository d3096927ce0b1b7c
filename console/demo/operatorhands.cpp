#include <console/demo/operatorhands.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QEnterEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QPointer>
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

DialogAnswer::DialogAnswer(std::function<void(QWidget&)> answer)
    : m_answer(std::move(answer))
{
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
    m_timer.start(10);
}

void DialogAnswer::look()
{
    const QPointer<QWidget> dialog = QApplication::activeModalWidget();
    if (!dialog || !dialog->isVisible()) {
        return;
    }
    m_timer.stop();
    m_given = true;
    m_answer(*dialog);
    if (dialog) {
        dialog->close();
    }
}

void rest(QWidget& widget, const QPoint& place)
{
    QHelpEvent event(QEvent::ToolTip, place, widget.mapToGlobal(place));
    QCoreApplication::sendEvent(&widget, &event);
}

} // namespace ZelkoConsole::operatorhands
