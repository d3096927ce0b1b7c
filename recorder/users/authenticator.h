#pragma once

#include <recorder/users/failurelimit.h>
#include <recorder/users/rights.h>
#include <recorder/users/turnstile.h>
#include <recorder/users/userfile.h>

#include <optional>
#include <string>

namespace ZelkoRecorder {

/// Finds out whether somebody is who he says. Any thread; a check blocks for as long as hashing takes, and for its turn
/// before.
class Authenticator
{
public:
    enum class Outcome {
        Admitted,
        Denied,       ///< user or password are wrong; which of them is not told
        TooManyTries, ///< too many wrong passwords came from this host; none is looked at for a while
        Busy          ///< too much is being checked; later it may go well
    };

    struct Answer
    {
        Outcome outcome = Outcome::Denied;
        Role role = Role::Viewer; ///< of somebody who is admitted

        bool operator==(const Answer&) const = default;
    };

    struct Options
    {
        FailureLimit::Options failures;
        Turnstile::Options turnstile;
    };

    /// Without users only nobody in particular is admitted.
    explicit Authenticator(std::optional<UserFile> users, const Options& options = {});

    /// Whether the user `name` has this password, asked from a host. Without a name and a password he is nobody in
    /// particular, and admitted as a viewer at once.
    Answer check(const QString& name, const QString& password, const std::string& host);

private:
    const UserEntry& entryToTry(const QString& name) const;
    Answer verify(const QString& name, const QString& password, const std::string& host);

    const std::optional<UserFile> m_users;
    const std::size_t m_seed;
    FailureLimit m_failures;
    Turnstile m_turnstile;
};

} // namespace ZelkoRecorder
