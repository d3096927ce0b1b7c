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

constexpr double edgeThickness = 2;
constexpr double gripWidth = 30;
constexpr double gripHeight = 6;
constexpr int besideSample = VerticalScale::tickLength + VerticalScale::gap;

const QColor shade(0, 0, 0, 130);
const QColor edgeLine(255, 255, 255);
const QColor gripColor(60, 64, 70);
const QColor crossLine(255, 255, 255, 180);
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
    painter.setPen(palette.color(QPalette::Text));
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
    const QRectF& plot = layout.plot;
    const double top = std::clamp(layout.yOf(first), plot.top(), plot.bottom());
    const double bottom = std::clamp(layout.yOf(last), plot.top(), plot.bottom());
    painter.fillRect(QRectF(plot.topLeft(), QPointF(plot.right(), top)), shade);
    painter.fillRect(QRectF(QPointF(plot.left(), bottom), plot.bottomRight()), shade);
    if (first >= 0 && first < layout.pixels.height()) {
        paintEdge(top);
    }
    if (last > 0 && last <= layout.pixels.height()) {
        paintEdge(bottom - edgeThickness);
    }
}

// With a grip in the middle, where one sees that it can be dragged.
void WaterfallOverlay::paintEdge(double top) const
{
    const PixelGrid grid(painter);
    const QRectF& plot = layout.plot;
    painter.fillRect(grid.rect({plot.left(), top, plot.width(), edgeThickness}), edgeLine);
    const double middle = plot.center().x();
    const QRectF grip(middle - gripWidth / 2, top + edgeThickness / 2 - gripHeight / 2, gripWidth, gripHeight);
    painter.fillRect(grid.rect(grip), edgeLine);
    painter.fillRect(grid.rect(grip.adjusted(1, 1, -1, -1)), gripColor);
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

void WaterfallOverlay::paintNoFrequencies() const
{
    const QRectF room(layout.plot.left(), layout.rulerTop, layout.plot.width(), painter.fontMetrics().height());
    painter.setPen(palette.color(QPalette::WindowText));
    painter.drawText(room, Qt::AlignCenter, WaterfallView::tr("The frequencies are not known"));
}

} // namespace SPECTRUM_OVERVIEW
