#include <mapwidgets/axiscolours.h>

#include <QPalette>

namespace axiscolours {

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
}

QColor bookmark(const QPalette& palette)
{
    return isDark(palette) ? QColor(0xE8, 0xA8, 0x38) : QColor(0xF2, 0xB1, 0x3C);
}

QColor textOn(const QColor& color)
{
    return qGray(color.rgb()) > 110 ? QColor(0x1A, 0x14, 0x00) : QColor(Qt::white);
}

} // namespace axiscolours
