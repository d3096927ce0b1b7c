#pragma once

#include <zelkobase/state/zelkobasestate_export.h>

#include <QString>

namespace ZelkoCommon {

/// Whether the device that stands at `devicePath` of Tree::Instance() is of a type that users are offered. True as well
/// for one that does not say its type.
ZELKOBASESTATE_EXPORT bool isOfferedDevice(const QString& devicePath);

} // namespace ZelkoCommon
