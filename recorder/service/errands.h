#pragma once

#include <recorder/link/treethreadgate.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>

namespace ZelkoRecorder {

/// The answer that somebody on another thread waits for. May be copied and kept; the first answer counts, any thread
/// may give it. When the last copy goes without one, whoever waits learns that there will be none.
template <typename Answer>
class Reply
{
public:
    Reply()
        : d(std::make_shared<Shared>())
    {}

    void operator()(Answer answer) const
    {
        if (!d->answered.exchange(true)) {
            d->promise.set_value(std::move(answer));
        }
    }

    /// For the one that waits, once.
    std::future<Answer> future() const { return d->promise.get_future(); }

private:
    struct Shared
    {
        std::promise<Answer> promise;
        std::atomic<bool> answered = false;
    };
    std::shared_ptr<Shared> d;
};

/// Takes questions from threads of the ORB to the recorder's own thread and waits for the answers, but not for ever.
class Errands
{
public:
    /// How a question can end other than with an answer.
    enum class Failure {
        GoingDown, ///< the recorder ends and does not come to it any more
        NotBegun,  ///< the recorder's thread did not come to it in time, and will not
        NoAnswer   ///< it was begun, and may still come to its end
    };

    /// `wakeUp` makes the recorder's thread call `run`, as TreeThreadGate wants it. `patience` bounds each wait.
    Errands(std::function<void()> wakeUp, std::chrono::milliseconds patience);

    /// What `question` gives, on the recorder's thread. Throws Failure. Not on the recorder's own thread.
    template <typename Answer>
    Answer ask(std::function<Answer()> question);

    /// As `ask`, for what takes longer: `question` may keep the reply and go.
    template <typename Answer>
    Answer askFor(std::function<void(const Reply<Answer>&)> question);

    /// Does what is waiting. The recorder's thread.
    void run();

    /// From the return on every question fails at once; those that wait are told so. The recorder's thread.
    void close();

private:
    TreeThreadGate m_gate;
    const std::chrono::milliseconds m_patience;
};

template <typename Answer>
Answer Errands::ask(std::function<Answer()> question)
{
    return askFor<Answer>([question = std::move(question)](const Reply<Answer>& reply) { reply(question()); });
}

template <typename Answer>
Answer Errands::askFor(std::function<void(const Reply<Answer>&)> question)
{
    const auto claim =
        std::make_shared<std::atomic_flag>(); // of whoever comes first: the answer, or the end of patience
    std::future<Answer> answer;
    {
        Reply<Answer> reply;
        answer = reply.future();
        m_gate.post([question = std::move(question), reply = std::move(reply), claim] {
            if (!claim->test_and_set()) {
                question(reply);
            }
        });
    }
    if (answer.wait_for(m_patience) != std::future_status::ready) {
        if (claim->test_and_set()) {
            throw Failure::NoAnswer;
        }
        throw Failure::NotBegun;
    }
    try {
        return answer.get();
    } catch (const std::future_error&) {
        throw Failure::GoingDown;
    }
}

} // namespace ZelkoRecorder
