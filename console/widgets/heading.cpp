#include <console/widgets/heading.h>

namespace ZelkoConsole {

Heading::Heading(const QString& text, QWidget* parent)
    : ElidedLabel(text, parent)
{
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.25);
    large.setBold(true);
    setFont(large);
}

} // namespace ZelkoConsole
