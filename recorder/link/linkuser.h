#pragma once

#include <credentials/role.h>

#include <QString>

namespace ZelkoRecorder {

/// For whom a client of the link acts.
struct LinkUser
{
    QString name; ///< empty: nobody in particular
    ZelkoCommon::Role role = ZelkoCommon::Role::Viewer;

    bool operator==(const LinkUser&) const = default;
};

/// What is said to somebody who wants to attach.
struct LinkAdmission
{
    enum class Outcome {
        Admitted,
        Denied,       ///< user or password are wrong
        TooManyTries, ///< none of this host is looked at for a while
        Busy          ///< the same may go well later
    };

    Outcome outcome = Outcome::Denied;
    ZelkoCommon::Role role = ZelkoCommon::Role::Viewer; ///< of somebody who is admitted
};

} // namespace ZelkoRecorder
