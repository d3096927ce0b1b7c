#pragma once

#include <console/hands/windowanswer.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QTest>

/// What an operator does with the next menu that pops up.
class MenuAnswer : public ZelkoConsole::WindowAnswer
{
public:
    explicit MenuAnswer(const std::function<void(QMenu&)>& answer)
        : WindowAnswer(&openMenu, [answer](QWidget* menu) { answer(*static_cast<QMenu*>(menu)); })
    {}

    /// The texts of a menu, "-" for a separator.
    static QStringList texts(const QMenu& menu)
    {
        QStringList all;
        for (const QAction* const action : menu.actions()) {
            all << (action->isSeparator() ? QStringLiteral("-") : action->text());
        }
        return all;
    }

    /// Clicks on an entry.
    static void click(QMenu& menu, const QAction* action)
    {
        QTest::mouseClick(&menu, Qt::LeftButton, Qt::NoModifier,
                          menu.actionGeometry(const_cast<QAction*>(action)).center());
    }

private:
    static QWidget* openMenu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
};
