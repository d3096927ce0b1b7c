#pragma once

#include <recorder/link/treelinkserver.h>
#include <recorder/users/authenticator.h>
#include <recorder/users/caller.h>

#include <functional>

namespace ZelkoRecorder {

/// Who makes the call that the present thread is serving. Any thread.
using CallerOfCall = std::function<Caller()>;

/// Knows the callers of the service by the sessions of the tree link that they name; see CallingSession. Who names
/// none, one that is not there, one of a client at another address or one that has ended is nobody in particular. What
/// is given may outlive the server.
CallerOfCall callersBySession(const TreeLinkServer& server);

/// Has the link ask an authenticator, which outlives what is given. Who is denied access stands in the log.
TreeLinkServer::Authenticate admission(Authenticator& authenticator);

} // namespace ZelkoRecorder
