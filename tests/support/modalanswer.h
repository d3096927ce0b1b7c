#pragma once

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>

/// Answers the next modal window as a user would, once it is shown. What the answer leaves open is closed, so that a
/// test that failed meanwhile goes on.
class ModalAnswer
{
public:
    explicit ModalAnswer(std::function<void(QWidget*)> answer)
        : m_answer(std::move(answer))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
        m_timer.start(5);
    }
    ModalAnswer(const ModalAnswer&) = delete;
    ModalAnswer& operator=(const ModalAnswer&) = delete;

    /// Whether there was such a window.
    bool wasGiven() const { return m_given; }

private:
    void look()
    {
        const QPointer<QWidget> window = QApplication::activeModalWidget();
        if (!window || !window->isVisible()) {
            return;
        }
        m_timer.stop();
        m_given = true;
        m_answer(window);
        if (window) {
            window->close();
        }
    }

    const std::function<void(QWidget*)> m_answer;
    QTimer m_timer;
    bool m_given = false;
};
