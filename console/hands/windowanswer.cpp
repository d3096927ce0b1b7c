#include <console/hands/windowanswer.h>

#include <QPointer>
#include <QWidget>

namespace ZelkoConsole {
namespace {

constexpr std::chrono::milliseconds lookInterval(5);

} // namespace

WindowAnswer::WindowAnswer(QWidget* (*find)(), std::function<void(QWidget*)> answer)
    : m_find(find)
    , m_answer(std::move(answer))
{
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
    m_timer.start(lookInterval);
}

WindowAnswer::~WindowAnswer() = default;

void WindowAnswer::look()
{
    const QPointer<QWidget> window = m_find();
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

} // namespace ZelkoConsole
