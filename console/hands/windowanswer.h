#pragma once

#include <QTimer>

#include <functional>

class QWidget;

namespace ZelkoConsole {

/// What the operator does with the next window of a kind, once it is shown. It is closed when he is done with it, if it
/// is open still: whoever waits for its end goes on, also when the answer went wrong. GUI thread.
class WindowAnswer
{
public:
    WindowAnswer(const WindowAnswer&) = delete;
    WindowAnswer& operator=(const WindowAnswer&) = delete;

    /// Whether there was such a window.
    bool wasGiven() const { return m_given; }

protected:
    /// `find` gives the window of that kind that is open, null while there is none. `answer` gets it and may destroy
    /// it. Nothing is answered once this object is gone.
    WindowAnswer(QWidget* (*find)(), std::function<void(QWidget*)> answer);
    ~WindowAnswer();

private:
    void look();

    QWidget* (*const m_find)();
    const std::function<void(QWidget*)> m_answer;
    QTimer m_timer;
    bool m_given = false;
};

} // namespace ZelkoConsole
