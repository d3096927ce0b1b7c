#include <observerbase/trace.h>

#include <QLoggingCategory>
#include <QMessageLogger>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

namespace {

Q_LOGGING_CATEGORY(lcTrace, "zelko.trace")

struct Receiver
{
    TraceSink receive;
    int calls = 0; // under way, on all threads
};

struct Sink
{
    std::mutex mutex;
    std::condition_variable callEnded;
    std::shared_ptr<Receiver> receiver; // null: the logging category
};

Sink& sink()
{
    static Sink instance;
    return instance;
}

// A call of the sink that is set when it begins.
class Call
{
public:
    Call()
    {
        const std::lock_guard lock(sink().mutex);
        m_receiver = sink().receiver;
        if (m_receiver) {
            ++m_receiver->calls;
            m_outer = std::exchange(innermost, this);
        }
    }
    ~Call()
    {
        if (m_receiver) {
            const std::lock_guard lock(sink().mutex);
            innermost = m_outer;
            --m_receiver->calls;
            sink().callEnded.notify_all();
        }
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    const Receiver* receiver() const { return m_receiver.get(); }

    /// How many calls of a receiver this thread is in.
    static int ofThisThread(const Receiver* receiver)
    {
        int count = 0;
        for (const Call* call = innermost; call; call = call->m_outer) {
            count += call->m_receiver.get() == receiver ? 1 : 0;
        }
        return count;
    }

private:
    static thread_local const Call* innermost;

    std::shared_ptr<Receiver> m_receiver;
    const Call* m_outer = nullptr;
};

thread_local const Call* Call::innermost = nullptr;

} // namespace

void _Q_Trace(const QString& text, const char* file, int line)
{
    const Call call;
    if (call.receiver()) {
        call.receiver()->receive(text, file, line);
    } else if (lcTrace().isWarningEnabled()) {
        QMessageLogger(file, line, nullptr, lcTrace().categoryName()).warning().noquote() << text;
    }
}

TraceSink SetTraceSink(TraceSink receive)
{
    auto next = receive ? std::make_shared<Receiver>(Receiver{std::move(receive)}) : nullptr;
    std::unique_lock lock(sink().mutex);
    const std::shared_ptr<Receiver> former = std::exchange(sink().receiver, std::move(next));
    if (!former) {
        return {};
    }
    sink().callEnded.wait(lock, [&] { return former->calls == Call::ofThisThread(former.get()); });
    return former->receive;
}
