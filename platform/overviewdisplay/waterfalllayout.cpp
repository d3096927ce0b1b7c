#include <overviewdisplay/waterfalllayout_p.h>

#include <overviewdisplay/verticalscale_p.h>
#include <overviewdisplay/waterfallview.h>

#include <QFontMetrics>

#include <algorithm>
#include <cmath>

namespace SPECTRUM_OVERVIEW {
namespace {

constexpr int border = 4;
constexpr int belowHeadline = 4;
constexpr int besidePicture = 14;
constexpr int scaleWidth = 14;
constexpr int besideText = VerticalScale::tickLength + VerticalScale::gap;

struct Margins
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

int levelWidth(const QFontMetrics& metrics)
{
    return std::max(metrics.horizontalAdvance(QStringLiteral("-00.00")),
                    metrics.horizontalAdvance(WaterfallView::tr("no data")));
}

Margins marginsOf(const QFontMetrics& metrics, int rulerHeight)
{
    return {border + metrics.horizontalAdvance(VerticalScale::longestTime()) + besideText,
            metrics.height() + belowHeadline + rulerHeight,
            besidePicture + scaleWidth + besideText + levelWidth(metrics) + border, metrics.height() / 2 + border};
}

} // namespace

WaterfallLayout::WaterfallLayout(const QSize& window, const QFontMetrics& metrics, int rulerHeight, double pixelRatio)
    : ratio(pixelRatio)
    , rulerTop(metrics.height() + belowHeadline)
{
    const Margins margins = marginsOf(metrics, rulerHeight);
    const QRect room = QRect(QPoint(0, 0), window).adjusted(margins.left, margins.top, -margins.right, -margins.bottom);
    const auto snapped = [pixelRatio](int place) { return static_cast<int>(std::lround(place * pixelRatio)); };
    if (!room.isEmpty()) {
        pixels = QRect(QPoint(snapped(room.left()), snapped(room.top())),
                       QPoint(snapped(room.right() + 1) - 1, snapped(room.bottom() + 1) - 1));
    }
    plot = QRectF(pixels.left() / ratio, pixels.top() / ratio, pixels.width() / ratio, pixels.height() / ratio);
    const double swatch = metrics.height();
    const double left = plot.right() + besidePicture;
    scale = QRectF(left, plot.top(), scaleWidth, std::max(plot.height() - 2 * swatch, 0.0));
    missing = QRectF(left, plot.bottom() - swatch, scaleWidth, swatch);
    right = window.width() - border;
}

QSize WaterfallLayout::around(const QSize& picture, const QFontMetrics& metrics, int rulerHeight)
{
    const Margins margins = marginsOf(metrics, rulerHeight);
    return {margins.left + picture.width() + margins.right, margins.top + picture.height() + margins.bottom};
}

int WaterfallLayout::rowAt(double y) const
{
    const double row = std::floor((y - plot.top()) * ratio);
    return static_cast<int>(std::clamp(row, 0.0, std::max(pixels.height() - 1.0, 0.0)));
}

int WaterfallLayout::columnAt(double x) const
{
    const double column = std::floor((x - plot.left()) * ratio);
    return static_cast<int>(std::clamp(column, 0.0, std::max(pixels.width() - 1.0, 0.0)));
}

int WaterfallLayout::edgeAt(double y) const
{
    const double edge = std::round((y - plot.top()) * ratio);
    return static_cast<int>(std::clamp<double>(edge, 0, pixels.height()));
}

} // namespace SPECTRUM_OVERVIEW
