#pragma once

#include "countedvalues.h"

#include <QElapsedTimer>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <utility>

/// Calls for a change as often in a second as CountedValues says, from a running event loop: some with each
/// millisecond, and what late ones have missed with the next.
class SteadyChanges
{
public:
    explicit SteadyChanges(std::function<void()> change)
        : m_change(std::move(change))
    {
        m_tick.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_tick, &QTimer::timeout, &m_tick, [this] { makeThoseDue(); });
        m_clock.start();
        m_tick.start(1);
    }

private:
    void makeThoseDue()
    {
        constexpr std::int64_t nanosecondsPerChange = 1'000'000'000 / CountedValues::ChangesPerSecond;
        for (const auto due = m_clock.nsecsElapsed() / nanosecondsPerChange; m_made < due; ++m_made) {
            m_change();
        }
    }

    std::function<void()> m_change;
    std::int64_t m_made = 0;
    QElapsedTimer m_clock;
    QTimer m_tick;
};
