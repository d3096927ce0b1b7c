#pragma once

#include <QCheckBox>

namespace ZelkoGUI::Filter {

/// Lets styles frame the box of a check box so that it stands out from a dark ground as well. They take a darker shade
/// of the window's colour, which nobody sees there.
void showFrameOnDark(QPalette& palette);

/// A check box that can be seen in a dark window before it is checked.
class FramedCheckBox : public QCheckBox
{
public:
    using QCheckBox::QCheckBox;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace ZelkoGUI::Filter
