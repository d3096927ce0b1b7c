#include <recorder/served/mailbox.h>

#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace ZelkoRecorder {

Mailbox::Mailbox(QObject* parent)
    : QObject(parent)
    , m_wakeUp(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
    , m_notifier(std::make_unique<QSocketNotifier>(m_wakeUp, QSocketNotifier::Read))
{
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { deliver(); });
}

Mailbox::~Mailbox()
{
    m_notifier.reset();
    ::close(m_wakeUp);
}

void Mailbox::post(std::function<void()> function)
{
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back(std::move(function));
    if (m_waiting.size() == 1) {
        eventfd_write(m_wakeUp, 1);
    }
}

// A function may end the event loop's turn for long; what is posted meanwhile wakes the loop anew.
void Mailbox::deliver()
{
    std::vector<std::function<void()>> due;
    {
        const std::lock_guard lock(m_mutex);
        eventfd_t count = 0;
        eventfd_read(m_wakeUp, &count);
        due.swap(m_waiting);
    }
    for (const auto& function : due) {
        function();
    }
}

} // namespace ZelkoRecorder
