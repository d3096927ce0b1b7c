#include <console/widgets/scaledfont.h>

namespace ZelkoConsole {

QFont scaledFont(QFont font, double factor)
{
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * factor);
    } else {
        font.setPixelSize(qRound(font.pixelSize() * factor));
    }
    return font;
}

} // namespace ZelkoConsole
