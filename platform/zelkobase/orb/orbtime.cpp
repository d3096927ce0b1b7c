#include <zelkobase/orb/orbtime_p.h>

namespace ZelkoCommon {

omni_time_t orbTimeAfter(std::chrono::milliseconds limit)
{
    using namespace std::chrono;
    const auto whole = duration_cast<seconds>(limit);
    unsigned long second = 0;
    unsigned long nanosecond = 0;
    omni_thread::get_time(&second, &nanosecond, static_cast<unsigned long>(whole.count()),
                          static_cast<unsigned long>(nanoseconds(limit - whole).count()));
    return {static_cast<_CORBA_ULong>(second), static_cast<_CORBA_ULong>(nanosecond)};
}

} // namespace ZelkoCommon
