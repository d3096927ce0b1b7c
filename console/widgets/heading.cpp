#include <console/widgets/heading.h>

#include <console/widgets/scaledfont.h>

#include <QComboBox>

namespace ZelkoConsole {

Heading::Heading(const QString& text, QWidget* parent)
    : guiHelper::ElidedLabel(text, parent)
{
    QFont large = scaledFont(font(), 1.25);
    large.setBold(true);
    setFont(large);
    QComboBox box;
    box.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon); // of those that give way as titles do
    setMinimumHeight(box.sizeHint().height());
}

} // namespace ZelkoConsole
