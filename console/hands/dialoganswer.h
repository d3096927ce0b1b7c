#pragma once

#include <QTimer>

#include <functional>

class QWidget;

namespace ZelkoConsole {

/// What the operator does with the next modal window that asks him something, once it is shown. It is closed when he is
/// done with it, if it is open still: whoever waits for its end goes on, also when the answer went wrong. GUI thread.
class DialogAnswer
{
public:
    /// `answer` gets the window, which is not null; it may destroy it. Nothing is answered once this object is gone.
    explicit DialogAnswer(std::function<void(QWidget*)> answer);
    ~DialogAnswer();
    DialogAnswer(const DialogAnswer&) = delete;
    DialogAnswer& operator=(const DialogAnswer&) = delete;

    /// Whether there was such a window.
    bool wasGiven() const { return m_given; }

private:
    void look();

    const std::function<void(QWidget*)> m_answer;
    QTimer m_timer;
    bool m_given = false;
};

} // namespace ZelkoConsole
