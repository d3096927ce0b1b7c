#pragma once

#include <zelkobase/orb/zelkobaseorb_export.h>

#include <mutex>

namespace ZelkoCommon {

/// Ends the calls of another thread, so that whoever waits for that thread does not wait for a peer that is silent.
class ZELKOBASEORB_EXPORT CallBreaker
{
public:
    CallBreaker() = default;
    ~CallBreaker();

    CallBreaker(const CallBreaker&) = delete;
    CallBreaker& operator=(const CallBreaker&) = delete;

    /// The calls that its thread makes while it lives are those of the breaker, which outlives it. One at a time in a
    /// thread, and one for a breaker.
    class ZELKOBASEORB_EXPORT Scope
    {
    public:
        explicit Scope(CallBreaker& breaker);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
    };

    /// Ends the call that is under way, whether or not it was executed, and every later one as it begins, with a system
    /// exception. Does not block. A call within this process, or one that waits for its connection to be made, is not
    /// ended before its own limit. Any thread.
    void breakCalls();

    /// Makes breakers known. Called by Orb when the ORB is initialised and serves nothing yet.
    static void prepare();

private:
    friend struct BreakerAccess;

    bool watch(int socket);
    void forget();

    std::mutex m_mutex;
    int m_socket = -1; // of the call under way, a descriptor of its own
    bool m_isBroken = false;
};

} // namespace ZelkoCommon
