#include <process/terminationsignals.h>

#include <csignal>

#include <sys/signalfd.h>
#include <unistd.h>

namespace ZelkoCommon {

namespace {

sigset_t terminations()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    return set;
}

} // namespace

void TerminationSignals::hold()
{
    const sigset_t set = terminations();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent)
{
    hold();
    const sigset_t set = terminations();
    m_descriptor = ::signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC);
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        signalfd_siginfo info;
        while (::read(m_descriptor, &info, sizeof info) == sizeof info) {
            Q_EMIT received();
        }
    });
}

TerminationSignals::~TerminationSignals()
{
    m_notifier.reset();
    ::close(m_descriptor);
    const sigset_t set = terminations();
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

} // namespace ZelkoCommon
