#pragma once

#include <zelkobase/orb/zelkobaseorb_export.h>

#include <QString>

#include <omniORB4/CORBA.h>

#include <chrono>

namespace ZelkoCommon {

/// What an exception of the ORB means, in a few words for a log: its name, and what usually stands behind it.
ZELKOBASEORB_EXPORT QString describe(const CORBA::Exception& exception);

/// Gives each call through this reference a time limit, after which it ends with CORBA::TRANSIENT or CORBA::TIMEOUT.
ZELKOBASEORB_EXPORT void setCallTimeout(CORBA::Object_ptr object, std::chrono::milliseconds limit);

} // namespace ZelkoCommon
