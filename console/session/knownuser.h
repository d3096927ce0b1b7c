#pragma once

#include <credentials/role.h>
#include <zelkobase/connection/linkcredentials.h>

namespace ZelkoConsole {

/// A user to whom the console can switch without asking for a password.
struct KnownUser
{
    ZelkoCommon::LinkCredentials credentials;
    ZelkoCommon::Role role = ZelkoCommon::Role::Viewer;

    bool operator==(const KnownUser&) const = default;
};

} // namespace ZelkoConsole
