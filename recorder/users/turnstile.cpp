#include <recorder/users/turnstile.h>

namespace ZelkoRecorder {

Turnstile::Turnstile(const Options& options)
    : m_options(options)
{}

Turnstile::Place::Place(Turnstile& turnstile, const std::string& host)
    : m_turnstile(turnstile)
    , m_host(host)
    , m_inside(turnstile.enter(host))
{}

Turnstile::Place::~Place()
{
    if (m_inside) {
        m_turnstile.leave(m_host);
    }
}

bool Turnstile::enter(const std::string& name)
{
    std::unique_lock lock(m_mutex);
    Host& host = m_hosts[name]; // stays where it is for as long as somebody of the host waits or is inside
    if (!hasPlaceFor(host)) {
        if (host.waiting >= m_options.waitingPerHost) {
            forgetIfIdle(name);
            return false;
        }
        ++host.waiting;
        m_left.wait_for(lock, m_options.patience, [&] { return hasPlaceFor(host); });
        --host.waiting;
    }
    if (!hasPlaceFor(host)) {
        forgetIfIdle(name);
        return false;
    }
    ++host.inside;
    ++m_inside;
    return true;
}

void Turnstile::leave(const std::string& name)
{
    const std::lock_guard lock(m_mutex);
    --m_hosts[name].inside;
    --m_inside;
    forgetIfIdle(name);
    m_left.notify_all();
}

// With the mutex held, as those below.
bool Turnstile::hasPlaceFor(const Host& host) const
{
    return m_inside < m_options.atOnce && host.inside < m_options.atOncePerHost;
}

void Turnstile::forgetIfIdle(const std::string& name)
{
    const auto found = m_hosts.find(name);
    if (found->second.inside == 0 && found->second.waiting == 0) {
        m_hosts.erase(found);
    }
}

} // namespace ZelkoRecorder
