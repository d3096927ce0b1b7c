#pragma once

#include <omniORB4/CORBA.h>

namespace ZelkoCommon {

/// The same object through GIOP 1.2 at least and with code sets, UTF-8 and UTF-16 where the reference names none. A
/// reference that was written by hand (corbaloc) says nothing of either, and the ORB would then take the oldest
/// protocol, which has no `wstring`. Does not call the object. Nil for nil.
CORBA::Object_ptr withCodeSets(CORBA::Object_ptr object);

} // namespace ZelkoCommon
