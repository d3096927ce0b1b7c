#include <console/hands/dialoganswer.h>

#include <QApplication>
#include <QPointer>
#include <QWidget>

namespace ZelkoConsole {
namespace {

constexpr std::chrono::milliseconds lookInterval(5);

} // namespace

DialogAnswer::DialogAnswer(std::function<void(QWidget*)> answer)
    : m_answer(std::move(answer))
{
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
    m_timer.start(lookInterval);
}

DialogAnswer::~DialogAnswer() = default;

void DialogAnswer::look()
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

} // namespace ZelkoConsole
