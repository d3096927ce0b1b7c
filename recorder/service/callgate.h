#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace ZelkoRecorder {

/// Lets threads of the ORB work on what the recorder owns, for as long as it is there.
class CallGate
{
public:
    /// Leave to work, for as long as it lives.
    class Pass
    {
    public:
        /// Throws what `throwUnanswered` throws of a recorder that ends when the gate is closed.
        explicit Pass(CallGate& gate);
        ~Pass();
        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;

    private:
        CallGate& m_gate;
    };

    /// From here on nobody gets in. Returns when nobody is inside any more. Calls `meanwhile` again and again, for
    /// those inside may wait for the thread that closes, and `giveUp` once if somebody is still inside after
    /// `patience`: that is to end whatever they wait for.
    void close(const std::function<void()>& meanwhile, const std::function<void()>& giveUp,
               std::chrono::milliseconds patience = std::chrono::seconds(2));

private:
    bool enter();
    void leave();

    std::mutex m_mutex;
    std::condition_variable m_left;
    int m_inside = 0;
    bool m_closed = false;
};

} // namespace ZelkoRecorder
