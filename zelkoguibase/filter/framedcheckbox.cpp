#include "framedcheckbox_p.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace ZelkoGUI::Filter {

void showFrameOnDark(QPalette& palette)
{
    constexpr int middle = 128;
    if (palette.color(QPalette::Base).lightness() < middle) {
        palette.setColor(QPalette::Window, palette.color(QPalette::Text));
    }
}

void FramedCheckBox::paintEvent(QPaintEvent*)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    showFrameOnDark(option.palette);
    QStylePainter(this).drawControl(QStyle::CE_CheckBox, option);
}

} // namespace ZelkoGUI::Filter
