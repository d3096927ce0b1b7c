#pragma once

#include <zelkobase/orb/zelkobaseorb_export.h>

#include <QString>

namespace ZelkoCommon {

/// Why the last connection with TLS that this thread tried to make did not come about, for people; empty if no
/// handshake of it failed since the last question, as when there is nobody at all. Each thread has its own answer, and
/// gets it once.
ZELKOBASEORB_EXPORT QString takeTlsRefusal();

} // namespace ZelkoCommon
