#pragma once

#include <resources/zelkoresources_export.h>

/// Makes the icons of the library available under ":/Zelko/" and ":/Filter/" for as long as the process lives. An
/// application calls it once, before its first window, or has resources of its own under these paths. The icons are
/// drawn so that they stand out on light and on dark backgrounds; SVG needs the image plugins of Qt Svg.
ZELKORESOURCES_EXPORT void registerZelkoIcons();
