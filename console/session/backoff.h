#pragma once

#include <chrono>

namespace ZelkoConsole {

/// How long to wait before trying again: the first wait, doubled each time up to the last one.
class BackOff
{
public:
    using Milliseconds = std::chrono::milliseconds;

    /// `first` is more than 0 and not above `last`.
    BackOff(Milliseconds first, Milliseconds last);

    /// The wait before the next attempt.
    Milliseconds next();

    /// An attempt succeeded: begins with the first wait again.
    void reset();

private:
    Milliseconds m_first;
    Milliseconds m_last;
    Milliseconds m_next;
};

} // namespace ZelkoConsole
