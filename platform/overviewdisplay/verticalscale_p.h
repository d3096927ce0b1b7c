#pragma once

#include <QColor>
#include <QRectF>
#include <QString>

#include <vector>

class QFontMetrics;
class QPainter;

namespace SPECTRUM_OVERVIEW {

struct TimeRange;

/// Ticks along the left or the right edge of an area, with their texts beside it.
struct VerticalScale
{
    enum class Side { Left, Right };

    struct Tick
    {
        double place = 0; ///< from the top of the area, in pixels
        QString text;     ///< empty: a small tick
    };

    static constexpr int tickLength = 6;
    static constexpr int gap = 4; ///< between tick and text

    /// Ticks of times that are round in local time, downwards, with as many texts as have room; at most as many ticks
    /// as there are pixels.
    static std::vector<Tick> ofTime(const TimeRange& range, double height, const QFontMetrics& metrics);

    /// Ticks of levels, upwards.
    static std::vector<Tick> ofLevels(double lowest, double highest, double height, const QFontMetrics& metrics);

    /// A text as wide as any of a time.
    static QString longestTime();

    static void paint(QPainter& painter, const std::vector<Tick>& ticks, const QRectF& area, Side side,
                      const QColor& color);
};

} // namespace SPECTRUM_OVERVIEW
