#pragma once

#include <recorder/served/jobthread.h>
#include <recorder/served/mailbox.h>

#include <zelkoidl/recorderservice.hh>

#include <QString>

#include <atomic>
#include <chrono>
#include <functional>

namespace ZelkoRecorder {

/// Calls a channel manager, one call after the other, on a thread of its own: a manager that hangs keeps nobody else.
/// Lives on the recorder's thread, on which all outcomes come.
class ManagerCaller
{
public:
    /// How a call ended.
    struct Outcome
    {
        bool done = false; ///< it was answered, and not refused
        QString why;       ///< otherwise why, for people
    };

    /// A call through the reference it is given. What it returns tells whether the manager agrees; it may throw what
    /// the ORB throws.
    using Call = std::function<bool(QD_ZLK::IF_ZLK_c_ChanMan_ptr)>;
    using Then = std::function<void(const Outcome&)>;

    /// Each call is given up after `limit`. `lost` is called once, with a text for people, when the manager is gone:
    /// its process ended, it has no such object any more, or two calls in a row were not answered.
    ManagerCaller(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager, std::chrono::milliseconds limit,
                  std::function<void(const QString& why)> lost);

    /// Waits for the call under way and forgets the others and their outcomes.
    ~ManagerCaller();

    /// From the next call on another manager is called. Null is not taken.
    void setManager(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager);

    /// Queues a call. `then` may be null. Once the manager is lost calls end at once, undone.
    void call(Call call, Then then);

    /// Asks for a sign of life unless there are calls to come anyway.
    void ping();

    /// Whether calls wait or are under way.
    bool isBusy() const { return m_waiting > 0; }

private:
    Outcome make(const Call& call);
    Outcome failed(const CORBA::SystemException& exception);
    void tellLost(const QString& why);

    const std::chrono::milliseconds m_limit;
    const std::function<void(const QString&)> m_lost;
    QD_ZLK::IF_ZLK_c_ChanMan_var m_manager; // of the thread of the calls
    int m_unanswered = 0;                   // likewise, in a row
    bool m_isLost = false;                  // likewise
    std::atomic<int> m_waiting = 0;
    Mailbox m_news;
    JobThread m_thread; // goes first
};

} // namespace ZelkoRecorder
