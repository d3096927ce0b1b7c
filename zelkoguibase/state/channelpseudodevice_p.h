#pragma once

#include <QLatin1String>

namespace ZelkoGUI {

/// Stands where a device may be named for whatever device the channel works on.
inline constexpr QLatin1String channelPseudoDevice("ZelkoChannel");

} // namespace ZelkoGUI
