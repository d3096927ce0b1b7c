#pragma once

#include <QDateTimeEdit>

namespace ZelkoGUI::Filter {

/// Edits a day, in a calendar as well, which opens by a click on the arrow, and by the keys that open the list of a
/// combo box: F4, and the arrow down together with Alt.
class DayEdit : public QDateTimeEdit
{
public:
    explicit DayEdit(QWidget* parent);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void openCalendar();
};

} // namespace ZelkoGUI::Filter
