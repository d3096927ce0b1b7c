#pragma once

#include <Qt>

class QAbstractButton;
class QPoint;
class QString;
class QTableView;
class QWidget;

/// What an operator does with mouse and keyboard, as real events. They need a window that is shown.
namespace ZelkoConsole::operatorhands {

/// Clicks on the header of a column, which sorts by it. Scrolls it into sight before.
void clickHeader(QTableView& table, int column);

/// Clicks into the first visible cell of a row; with a modifier as the operator would hold it.
void clickRow(QTableView& table, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

/// Goes to a field and types there, in place of what is selected, or else where the cursor stands.
void type(QWidget& field, const QString& text);

/// Goes to a check box, or a button that stays down, and toggles it with the space key.
void toggle(QAbstractButton& button);

/// Presses the key for the context menu of whatever has the focus. Not every window system makes that of the key's
/// event.
void pressMenuKey();

/// Moves the pointer onto a widget, which then says in the status bar what it is for.
void enter(QWidget& widget);

/// Lets the pointer rest at a place of a widget until it asks for a tool tip.
void rest(QWidget& widget, const QPoint& place);

} // namespace ZelkoConsole::operatorhands
