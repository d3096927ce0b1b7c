#pragma once

#include <mapwidgets/mapwidgets_export.h>

#include <functional>

/// The smallest number of at least `least` that is 1, 2 or 5 times a power of ten; `least` is above 0.
MAPWIDGETS_EXPORT double roundNumber(double least);

/// The smallest part of a distance between ticks, a tenth to a half, that is at least `least` and round itself, as
/// `roundUp` has it; the distance where there is none.
MAPWIDGETS_EXPORT double partOf(double distance, double least, const std::function<double(double)>& roundUp);
