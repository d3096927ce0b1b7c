#include <overviewdisplay/waterfalloverlay_p.h>

#include <mapwidgets/pixelgrid.h>
#include <overviewdisplay/levelcolours.h>
#include <overviewdisplay/verticalscale_p.h>
#include <overviewdisplay/waterfalllayout_p.h>
#include <overviewdisplay/waterfallview.h>

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace SPECTRUM_OVERVIEW {
namespace {

constexpr int besideSample = VerticalScale::tickLength + VerticalScale::gap;

const QColor shade(0, 0, 0, 130);
const QColor edgeLine(255, 255, 255, 230);
const QColor crossLine(255, 255, 255, 220);
const QColor crossShade(0, 0, 0, 120);

void frame(QPainter& painter, const QRectF& area, const QColor& color)
{
    const PixelGrid grid(painter);
    const double line = grid.width(1);
    const QRectF outside = grid.rect(area).adjusted(-line, -line, line, line);
    painter.fillRect(QRectF(outside.left(), outside.top(), outside.width(), line), color);
    painter.fillRect(QRectF(outside.left(), outside.bottom() - line, outside.width(), line), color);
    painter.fillRect(QRectF(outside.left(), outside.top(), line, outside.height()), color);
    painter.fillRect(QRectF(outside.right() - line, outside.top(), line, outside.height()), color);
}

} // namespace

void WaterfallOverlay::paintFrame(bool hasFocus) const
{
    frame(painter, layout.plot, palette.color(hasFocus ? QPalette::Highlight : QPalette::Mid));
}

void WaterfallOverlay::paintEmpty(const QString& text) const
{
    painter.fillRect(PixelGrid(painter).rect(layout.plot), palette.color(QPalette::Base));
    painter.setPen(palette.color(QPalette::Disabled, QPalette::WindowText));
    const double margin = painter.fontMetrics().height();
    painter.drawText(layout.plot.adjusted(margin, 0, -margin, 0), Qt::AlignCenter | Qt::TextWordWrap, text);
}

void WaterfallOverlay::paintScale(const LevelColours& colours) const
{
    const QColor text = palette.color(QPalette::WindowText);
    const QFontMetrics metrics = painter.fontMetrics();
    const QRectF bar = PixelGrid(painter).rect(layout.scale);
    const int pixels = std::max(static_cast<int>(bar.height() * layout.ratio), 1);
    for (int pixel = 0; pixel < pixels; ++pixel) {
        const QRectF line(bar.left(), bar.top() + pixel / layout.ratio, bar.width(), 1 / layout.ratio);
        painter.fillRect(line, QColor(LevelColours::at(1 - (pixel + 0.5) / pixels)));
    }
    frame(painter, layout.scale, palette.color(QPalette::Mid));
    VerticalScale::paint(painter,
                         VerticalScale::ofLevels(colours.lowest(), colours.highest(), layout.scale.height(), metrics),
                         layout.scale, VerticalScale::Side::Right, text);
    painter.fillRect(PixelGrid(painter).rect(layout.missing), QColor(colours.missing()));
    frame(painter, layout.missing, palette.color(QPalette::Mid));
    painter.drawText(
        QRectF(layout.missing.right() + besideSample, layout.missing.top(), layout.right, layout.missing.height()),
        Qt::AlignLeft | Qt::AlignVCenter, WaterfallView::tr("no data"));
    painter.drawText(QPointF(layout.scale.left(), layout.rulerTop + metrics.ascent()), WaterfallView::tr("dBFS"));
}

void WaterfallOverlay::paintSelection(double first, double last) const
{
    const PixelGrid grid(painter);
    const QRectF& plot = layout.plot;
    const double top = std::clamp(layout.yOf(first), plot.top(), plot.bottom());
    const double bottom = std::clamp(layout.yOf(last), plot.top(), plot.bottom());
    painter.fillRect(QRectF(plot.topLeft(), QPointF(plot.right(), top)), shade);
    painter.fillRect(QRectF(QPointF(plot.left(), bottom), plot.bottomRight()), shade);
    if (layout.yOf(first) >= plot.top() && first < layout.pixels.height()) {
        painter.fillRect(grid.rect({plot.left(), top, plot.width(), 1}), edgeLine);
    }
    if (last > 0 && layout.yOf(last) <= plot.bottom()) {
        painter.fillRect(grid.rect({plot.left(), bottom - 1, plot.width(), 1}), edgeLine);
    }
}

// White alone would not be seen on strong levels.
void WaterfallOverlay::paintCross(int column, int row) const
{
    const PixelGrid grid(painter);
    const QRectF& plot = layout.plot;
    const double x = layout.xOf(column);
    const double y = layout.yOf(row);
    painter.save();
    painter.setClipRect(plot, Qt::IntersectClip);
    for (const auto& [thickness, color] : {std::pair(3.0, crossShade), std::pair(1.0, crossLine)}) {
        painter.fillRect(grid.vertical(x, plot.top(), plot.bottom(), thickness), color);
        painter.fillRect(grid.horizontal(y, plot.left(), plot.right(), thickness), color);
    }
    painter.restore();
}

} // namespace SPECTRUM_OVERVIEW
