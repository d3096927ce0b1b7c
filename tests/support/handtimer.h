#pragma once

#include <QPointer>

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

/// Stands in for timers that fire once. Time passes only when it is told to.
class HandTimer
{
public:
    using Duration = std::chrono::milliseconds;
    using Call = std::function<void()>;

    /// What is given to the class under test. It must not outlive the timer.
    auto singleShot()
    {
        return [this](Duration delay, QObject* context, Call call) {
            m_calls.push_back({m_now + delay, context, std::move(call)});
        };
    }

    /// How many calls are still to come.
    std::size_t pending() const { return m_calls.size(); }

    /// Makes the calls that fall due meanwhile, in order; those made for a context that is gone by then are left out.
    void advance(Duration duration)
    {
        const Duration end = m_now + duration;
        for (auto next = earliest(); next != m_calls.end() && next->due <= end; next = earliest()) {
            m_now = next->due;
            const Pending due = std::move(*next);
            m_calls.erase(next);
            if (due.context) {
                due.call();
            }
        }
        m_now = end;
    }

private:
    struct Pending
    {
        Duration due;
        QPointer<QObject> context;
        Call call;
    };

    std::vector<Pending>::iterator earliest()
    {
        return std::min_element(m_calls.begin(), m_calls.end(),
                                [](const Pending& a, const Pending& b) { return a.due < b.due; });
    }

    std::vector<Pending> m_calls;
    Duration m_now{0};
};
