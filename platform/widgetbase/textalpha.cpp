#include <widgetbase/textalpha.h>

#include <QWidget>

namespace guiHelper {

// Group by group: one colour for all of them would take the look of a disabled field away.
void setTextAlpha(QWidget& widget, int alpha)
{
    QPalette changed = widget.palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QColor color = changed.color(group, QPalette::Text);
        color.setAlpha(alpha);
        changed.setColor(group, QPalette::Text, color);
    }
    widget.setPalette(changed);
}

} // namespace guiHelper
