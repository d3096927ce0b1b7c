#pragma once

#include <ctime>

/// Time that this thread has worked so far, in milliseconds: what others do on the machine meanwhile does not count.
inline double threadWorkMs()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}
