#include <recorder/users/authenticator.h>

#include <QHash>
#include <QRandomGenerator>

#include <utility>

namespace ZelkoRecorder {

Authenticator::Authenticator(std::optional<UserFile> users, const Options& options)
    : m_users(std::move(users))
    , m_seed(static_cast<std::size_t>(QRandomGenerator::system()->generate64()))
    , m_failures(options.failures)
    , m_turnstile(options.turnstile)
{}

Authenticator::Answer Authenticator::check(const QString& name, const QString& password, const std::string& host)
{
    if (name.isEmpty() && password.isEmpty()) {
        return {Outcome::Admitted, Role::Viewer};
    }
    if (!m_users) {
        return {Outcome::Denied};
    }
    if (!m_failures.begin(host)) {
        return {Outcome::TooManyTries};
    }
    const Answer answer = verify(name, password, host);
    if (answer.outcome != Outcome::Denied) {
        m_failures.takeBack(host);
    }
    return answer;
}

// A name that is not there costs the same as one that is, so that the time does not tell which names there are.
Authenticator::Answer Authenticator::verify(const QString& name, const QString& password, const std::string& host)
{
    const Turnstile::Place place(m_turnstile, host);
    if (!place) {
        return {Outcome::Busy};
    }
    const UserEntry& entry = entryToTry(name);
    const bool matches = entry.hash.matches(password.toUtf8());
    return matches && entry.name == name ? Answer{Outcome::Admitted, entry.role} : Answer{Outcome::Denied};
}

// For a name that is not there always the same other user's, as the hashes of users may differ in their cost.
const UserEntry& Authenticator::entryToTry(const QString& name) const
{
    const UserEntry* const entry = m_users->find(name);
    return entry ? *entry : m_users->users()[qHash(name, m_seed) % m_users->users().size()];
}

} // namespace ZelkoRecorder
