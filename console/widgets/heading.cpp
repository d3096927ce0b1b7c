#include <console/widgets/heading.h>

#include <console/widgets/scaledfont.h>

namespace ZelkoConsole {

Heading::Heading(const QString& text, QWidget* parent)
    : guiHelper::ElidedLabel(text, parent)
{
    QFont large = scaledFont(font(), 1.25);
    large.setBold(true);
    setFont(large);
}

} // namespace ZelkoConsole
