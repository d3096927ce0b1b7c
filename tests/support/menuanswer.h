#pragma once

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <functional>
#include <utility>

/// What an operator does with the next menu that pops up, once it is shown. It is closed when he is done with it, if it
/// is open still, so whoever waits for its end goes on.
class MenuAnswer
{
public:
    explicit MenuAnswer(std::function<void(QMenu&)> answer)
        : m_answer(std::move(answer))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
        m_timer.start(5);
    }

    bool wasGiven() const { return m_given; }

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
    void look()
    {
        const QPointer<QMenu> menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu || !menu->isVisible()) {
            return;
        }
        m_timer.stop();
        m_given = true;
        m_answer(*menu);
        if (menu) {
            menu->close();
        }
    }

    const std::function<void(QMenu&)> m_answer;
    QTimer m_timer;
    bool m_given = false;
};
