#include <zelkobase/connection/wakeup.h>

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace ZelkoCommon {

WakeUp::WakeUp(std::function<void()> what)
    : m_what(std::move(what))
{}

WakeUp::~WakeUp() = default;

void WakeUp::call()
{
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

bool WakeUp::event(QEvent* event)
{
    if (event->type() != QEvent::User) {
        return QObject::event(event);
    }
    m_what();
    return true;
}

} // namespace ZelkoCommon
