#pragma once

#include <omniORB4/CORBA.h>

#include <chrono>

namespace ZelkoCommon {

/// The time of the ORB's clock at which `limit` from now is over.
omni_time_t orbTimeAfter(std::chrono::milliseconds limit);

} // namespace ZelkoCommon
