#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

/// Relative, from 0 to 1.
inline double luminance(const QColor& color)
{
    const auto linear = [](float part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// From 1, where there is none, to 21; a text is legible from 4.5 on.
inline double contrast(const QColor& first, const QColor& second)
{
    const double one = luminance(first) + 0.05;
    const double other = luminance(second) + 0.05;
    return std::max(one, other) / std::min(one, other);
}
