#pragma once

#include "threadwork.h"

#include <QCoreApplication>

#include <algorithm>

/// Turns the event loop of this thread, and keeps how long it worked in the turn in which it worked longest.
class LongestTurn
{
public:
    /// In milliseconds, since the last restart.
    double ms() const { return m_longest; }
    void restart() { m_longest = 0; }

    /// `work` belongs to the turn.
    template <typename Work>
    void turn(const Work& work)
    {
        const double start = threadWorkMs();
        work();
        QCoreApplication::processEvents();
        m_longest = std::max(m_longest, threadWorkMs() - start);
    }
    void turn()
    {
        turn([] {});
    }

    /// Lets everything be done that is done by and by.
    void settle()
    {
        constexpr int turns = 200;
        for (int i = 0; i < turns; ++i) {
            turn();
        }
    }

private:
    double m_longest = 0;
};
