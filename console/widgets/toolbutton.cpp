#include <console/widgets/toolbutton.h>

#include <QToolButton>

namespace ZelkoConsole {

QToolButton* makeToolButton(const char* objectName, const QIcon& icon)
{
    auto* const button = new QToolButton;
    button->setObjectName(QLatin1String(objectName));
    button->setIcon(icon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

void nameToolButton(QToolButton* button, const QString& text)
{
    button->setToolTip(text);
    button->setAccessibleName(text);
}

} // namespace ZelkoConsole
