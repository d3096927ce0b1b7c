#pragma once

#include <mapwidgets/mapwidgets_export.h>

/// The smallest number of at least `least` that is 1, 2 or 5 times a power of ten; `least` is above 0.
MAPWIDGETS_EXPORT double roundNumber(double least);
