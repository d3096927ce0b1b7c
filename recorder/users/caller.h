#pragma once

#include <recorder/users/rights.h>

#include <QString>

namespace ZelkoRecorder {

/// For whom a client acts. Without credentials that is nobody in particular, who is a viewer.
struct Caller
{
    QString name; ///< empty: nobody in particular
    Role role = Role::Viewer;

    bool may(Action action) const { return mayDo(role, action); }

    /// Who it is, for a log line: "user \"anna\" (operator)", or "a client without a name (viewer)".
    QString text() const;

    bool operator==(const Caller&) const = default;
};

} // namespace ZelkoRecorder
