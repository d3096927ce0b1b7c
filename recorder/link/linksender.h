#pragma once

#include <zelkobase/orb/callbreaker.h>

#include <zelkoidl/treelink.hh>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace ZelkoRecorder {

/// The thread that calls one client. Batches go out one at a time and in order.
class LinkSender
{
public:
    /// Both are called on the sender's thread.
    struct Callbacks
    {
        std::function<void()> sent;                         ///< there is room for another batch
        std::function<void(const std::string& why)> failed; ///< the client does not take anything more; comes once
    };

    LinkSender(ZelkoTreeLink::Subscriber_ptr client, ZelkoTreeLink::SessionId session, Callbacks callbacks);

    /// Ends a call that is under way; see CallBreaker for what it may still wait for.
    ~LinkSender();

    /// One batch travels while the next one waits, so that the line does not fall idle in between.
    bool hasRoom() const;

    /// Takes over a batch; only when there is room.
    void send(std::string batch);

    /// True when the thread has come to its end, so that the destructor does not wait.
    bool hasEnded() const;

    /// No further call begins, and no callback either.
    void stop();

private:
    void run();
    bool waitForBatch(std::string& batch);
    bool deliver(const std::string& batch);
    template <typename Callback, typename... Arguments>
    void report(const Callback& callback, const Arguments&... arguments);

    const ZelkoTreeLink::Subscriber_var m_client;
    const ZelkoTreeLink::SessionId m_session;
    const Callbacks m_callbacks;
    CORBA::ULong m_number = 0;
    ZelkoCommon::CallBreaker m_breaker;

    mutable std::mutex m_mutex;
    std::condition_variable m_somethingToDo;
    std::deque<std::string> m_waiting;
    bool m_stopped = false;
    bool m_ended = false;

    std::thread m_thread; // last: it uses all of the above
};

} // namespace ZelkoRecorder
