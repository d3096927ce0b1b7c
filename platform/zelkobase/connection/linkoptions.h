#pragma once

#include <zelkobase/connection/linkcredentials.h>

#include <chrono>
#include <cstddef>

namespace ZelkoCommon {

/// Times and bounds of a tree link on the client's side.
struct LinkOptions
{
    LinkCredentials credentials; ///< where a sub system has none of its own

    /// After this time without an answer the server counts as gone.
    std::chrono::milliseconds callTimeout{5000};

    /// How often the server is asked whether it is still there; how late a silent death is noticed.
    std::chrono::milliseconds heartbeat{1000};

    /// Wait before the next attempt to connect: the first one, doubled each time up to the last one.
    std::chrono::milliseconds firstRetry{200};
    std::chrono::milliseconds lastRetry{5000};

    /// The same where the server denied access: neither user nor password change by themselves.
    std::chrono::milliseconds deniedRetry{30000};

    /// How long the GUI thread works on changes before it lets its event loop go round.
    std::chrono::microseconds sliceBudget{4000};

    /// What may wait for the GUI thread; more is held back at the server.
    std::size_t maxPendingBytes = 8 * 1024 * 1024;

    /// For how long a batch is held back before the connection is given up. Shorter than the server's patience.
    std::chrono::milliseconds patience{15000};
};

} // namespace ZelkoCommon
