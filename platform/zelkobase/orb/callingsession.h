#pragma once

#include <zelkobase/orb/zelkobaseorb_export.h>

#include <cstdint>
#include <string>

namespace ZelkoCommon {

/// Says in each call for which session of the tree link it is made, so that a recorder knows who asks.
///
/// The number of a session, which nobody can guess, travels as a service context of the call, and only to the address
/// that gave it. All functions may be called on any thread.
class ZELKOBASEORB_EXPORT CallingSession
{
public:
    /// The identifier of the service context. Its data is an encapsulation of one unsigned long long.
    static constexpr std::uint32_t contextId = 0x5a4b4c01;

    /// The session that the call names which this thread is serving; 0 where it names none, where it comes from this
    /// process, and on a thread that serves none.
    static std::uint64_t current();

    /// Where the last call went to which a reply came to this thread, as the transport has it:
    /// "giop:tcp:127.0.0.1:4711". Empty when there was none.
    static const std::string& lastCalledAddress();

    /// While it lives, calls of this process to `address` name the session; of several for one address the last one
    /// made.
    class ZELKOBASEORB_EXPORT Pass
    {
    public:
        Pass() = default;
        Pass(std::uint64_t session, const std::string& address);
        ~Pass();
        Pass(Pass&& other) noexcept;
        Pass& operator=(Pass&& other) noexcept;

    private:
        std::uint64_t m_number = 0; // 0: none
    };

    /// Makes calls name their sessions. Called by Orb when the ORB is initialised and serves nothing yet.
    static void prepare();
};

} // namespace ZelkoCommon
