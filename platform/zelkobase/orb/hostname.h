#pragma once

#include <zelkobase/orb/zelkobaseorb_export.h>

#include <QString>

namespace ZelkoCommon {

/// Whether `host` can be the name or address of a host. Anything else would mean something of its own in the address
/// that the ORB is given.
ZELKOBASEORB_EXPORT bool canBeHost(const QString& host);

} // namespace ZelkoCommon
