#include <overviewdisplay/verticalscale_p.h>

#include <mapwidgets/pixelgrid.h>
#include <mapwidgets/roundnumber.h>
#include <mapwidgets/timeticks.h>
#include <overviewdisplay/waterfallview.h>

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace SPECTRUM_OVERVIEW {
namespace {

constexpr int smallTickLength = 3;
constexpr double leastGap = 7;      // pixels between small ticks
constexpr double linesOfText = 2.5; // a text and the space up to the next one

using Tick = VerticalScale::Tick;

double labelledGap(const QFontMetrics& metrics)
{
    return linesOfText * metrics.height();
}

double widest(const std::vector<Tick>& ticks, const QFontMetrics& metrics)
{
    double width = 0;
    for (const Tick& tick : ticks) {
        width = std::max<double>(width, metrics.horizontalAdvance(tick.text));
    }
    return width;
}

} // namespace

// No more than there are pixels, because adding a distance that is too small for a large number never arrives.
std::vector<Tick> VerticalScale::ofTime(const TimeRange& range, double height, const QFontMetrics& metrics)
{
    const auto start = static_cast<double>(range.start);
    const auto extent = static_cast<double>(range.stop - range.start);
    const double distance = timeticks::distance(extent / height * labelledGap(metrics));
    const double small = partOf(distance, extent / height * leastGap, timeticks::distance);
    std::vector<Tick> ticks;
    const auto add = [&](double every, bool hasText) {
        double tick = timeticks::first(start, every);
        for (int i = 0; i < height && tick < start + extent; ++i) {
            if (tick >= start) {
                ticks.push_back({(tick - start) / extent * height, hasText ? timeticks::text(tick, every) : QString()});
            }
            tick = timeticks::next(tick, every);
        }
    };
    add(small, false);
    add(distance, true);
    return ticks;
}

std::vector<Tick> VerticalScale::ofLevels(double lowest, double highest, double height, const QFontMetrics& metrics)
{
    const double perPixel = (highest - lowest) / height;
    const double distance = roundNumber(perPixel * labelledGap(metrics));
    const double small = partOf(distance, perPixel * leastGap, roundNumber);
    const int digits = distance < 1 ? static_cast<int>(std::ceil(-std::log10(distance) - 1e-9)) : 0;
    std::vector<Tick> ticks;
    const auto add = [&](double every, bool hasText) {
        double number = std::ceil(lowest / every - 1e-9);
        for (int i = 0; i <= height && number * every <= highest + every * 1e-9; ++i, ++number) {
            const double level = number * every;
            const QString text = QString::number(level + 0.0, 'f', digits);
            ticks.push_back({(highest - level) / perPixel, hasText ? text : QString()});
        }
    };
    add(small, false);
    add(distance, true);
    return ticks;
}

QString VerticalScale::longestTime()
{
    return QStringLiteral("00:00:00.000000");
}

void VerticalScale::paint(QPainter& painter, const std::vector<Tick>& ticks, const QRectF& area, Side side,
                          const QColor& color)
{
    const PixelGrid grid(painter);
    const QFontMetrics metrics = painter.fontMetrics();
    const double sign = side == Side::Left ? -1 : 1;
    const double edge = side == Side::Left ? area.left() : area.right();
    const double beside = edge + sign * (tickLength + gap);
    const double width = widest(ticks, metrics);
    painter.setPen(color);
    for (const Tick& tick : ticks) {
        const double end = edge + sign * (tick.text.isEmpty() ? smallTickLength : tickLength);
        const double place = std::min(area.top() + tick.place, area.bottom() - 1);
        painter.fillRect(grid.horizontal(place, std::min(edge, end), std::max(edge, end)), color);
        const QRectF room(side == Side::Left ? beside - width : beside, place + 0.5 - metrics.height() / 2.0, width,
                          metrics.height());
        painter.drawText(room, Qt::AlignRight | Qt::AlignVCenter | Qt::TextDontClip, tick.text);
    }
}

} // namespace SPECTRUM_OVERVIEW
