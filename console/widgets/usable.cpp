#include <console/widgets/usable.h>

#include <QWidget>

#include <algorithm>

namespace ZelkoConsole {

void setUsable(const Usability& usability)
{
    usability.widget->setEnabled(usability.whyNot.isEmpty());
    usability.widget->setStatusTip(usability.whyNot.isEmpty() ? usability.tip : usability.whyNot);
}

// Those that come first: a focus whose widget is disabled looks for another place by itself.
void setUsable(const QList<Usability>& turns)
{
    const auto canBeUsed = [](const Usability& usability) { return usability.whyNot.isEmpty(); };
    const auto first = std::find_if(turns.begin(), turns.end(), canBeUsed);
    for (const Usability& usability : turns) {
        if (canBeUsed(usability)) {
            setUsable(usability);
        }
    }
    for (const Usability& usability : turns) {
        if (!canBeUsed(usability)) {
            if (usability.widget->hasFocus() && first != turns.end()) {
                first->widget->setFocus();
            }
            setUsable(usability);
        }
    }
}

} // namespace ZelkoConsole
