#pragma once

#include <QString>

namespace ZelkoCommon {

/// For whom a client acts.
struct LinkCredentials
{
    QString user; ///< empty, with an empty password: nobody in particular, who may look and nothing else
    QString password;

    bool operator==(const LinkCredentials&) const = default;
};

} // namespace ZelkoCommon
