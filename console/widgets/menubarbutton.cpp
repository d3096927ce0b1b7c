#include <console/widgets/menubarbutton.h>

#include <QMenuBar>
#include <QStyleOptionMenuItem>

namespace ZelkoConsole {

MenuBarButton::MenuBarButton(const QMenuBar* bar)
    : m_bar(bar)
{
    setFlat(true);
    setFocusPolicy(Qt::NoFocus);
}

MenuBarButton::~MenuBarButton() = default;

// What the bar reckons for a menu. The bar itself cannot be asked: it asks its corner before it answers.
QSize MenuBarButton::sizeHint() const
{
    QStyleOptionMenuItem menu;
    menu.initFrom(m_bar);
    menu.menuItemType = QStyleOptionMenuItem::Normal;
    menu.text = text();
    const QSize content = m_bar->fontMetrics().size(Qt::TextShowMnemonic, menu.text);
    const int height = m_bar->style()->sizeFromContents(QStyle::CT_MenuBarItem, &menu, content, m_bar).height();
    return {QPushButton::sizeHint().width(), height};
}

} // namespace ZelkoConsole
