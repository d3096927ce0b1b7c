#pragma once

#include <QPushButton>

class QMenuBar;

namespace ZelkoConsole {

/// A flat button for the corner of a menu bar, in one line with the menus. It takes no focus: what it does needs a menu
/// for the keyboard.
class MenuBarButton : public QPushButton
{
    Q_OBJECT

public:
    /// `bar` outlives the button.
    explicit MenuBarButton(const QMenuBar* bar);
    ~MenuBarButton() override;

    /// As high as the menus: a bar that is higher than they are draws their lower edges in its middle.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

private:
    const QMenuBar* const m_bar;
};

} // namespace ZelkoConsole
