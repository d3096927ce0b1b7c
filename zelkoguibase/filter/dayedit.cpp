#include "dayedit_p.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionComboBox>

namespace ZelkoGUI::Filter {

DayEdit::DayEdit(QWidget* parent)
    : QDateTimeEdit(parent)
{
    setCalendarPopup(true);
}

void DayEdit::keyPressEvent(QKeyEvent* event)
{
    const bool isAltDown = event->key() == Qt::Key_Down && event->modifiers().testFlag(Qt::AltModifier);
    if (event->key() == Qt::Key_F4 || isAltDown) {
        openCalendar();
    } else {
        QDateTimeEdit::keyPressEvent(event);
    }
}

// There is no other way to the calendar than a press on the arrow, which is drawn as that of a combo box.
void DayEdit::openCalendar()
{
    QStyleOptionComboBox option;
    option.initFrom(this);
    option.editable = true;
    const QPointF arrow =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, this).center();
    QMouseEvent press(QEvent::MouseButtonPress, arrow, mapToGlobal(arrow), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    mousePressEvent(&press);
}

} // namespace ZelkoGUI::Filter
