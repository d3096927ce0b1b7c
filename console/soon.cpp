#include <console/soon.h>

#include <utility>

namespace ZelkoConsole {

Soon::Soon(std::function<void()> function)
    : m_function(std::move(function))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(0);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { m_function(); });
}

Soon::~Soon() = default;

} // namespace ZelkoConsole
