#pragma once

#include <zelkobase/orb/zelkobaseorb_export.h>

#include <omniORB4/CORBA.h>

#include <chrono>

namespace ZelkoCommon {

/// While one lives, all calls of the thread that made it share one time limit: connecting, asking a naming service,
/// every call and every repetition. After it a call ends with CORBA::TRANSIENT or CORBA::TIMEOUT. It goes before the
/// limits of the process and of a reference, but for OrbOptions::connectTimeout.
///
/// Within another one it can shorten the time that is left, not lengthen it. Destroyed on its own thread, the last made
/// first.
class ZELKOBASEORB_EXPORT CallDeadline
{
public:
    explicit CallDeadline(std::chrono::milliseconds limit);
    ~CallDeadline();

    CallDeadline(const CallDeadline&) = delete;
    CallDeadline& operator=(const CallDeadline&) = delete;

private:
    const omni_thread::ensure_self m_self; // the ORB knows limits of threads of its own kind only
    CallDeadline* const m_outer;
    omni_time_t m_end;
};

} // namespace ZelkoCommon
