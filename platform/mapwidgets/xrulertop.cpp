#include <mapwidgets/xrulertop.h>

#include <mapwidgets/pixelgrid.h>
#include <mapwidgets/roundnumber.h>

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int tickLength = 6;
constexpr int smallTickLength = 3;
constexpr int textGap = 1;
constexpr int gapBetweenTexts = 14;
constexpr int gapBetweenSmallTicks = 7;

} // namespace

XRulerTop::XRulerTop(QWidget* parent)
    : AxisBase(parent)
{}

XRulerTop::~XRulerTop() = default;

int XRulerTop::rulerHeight() const
{
    return rulerTop() + fontMetrics().height() + textGap + tickLength;
}

int XRulerTop::rulerTop() const
{
    return 0;
}

double XRulerTop::tickDistance(double least) const
{
    return roundNumber(least);
}

double XRulerTop::firstTick(double value, double distance) const
{
    return std::ceil(value / distance) * distance;
}

double XRulerTop::nextTick(double tick, double distance) const
{
    return std::round(tick / distance + 1) * distance;
}

QString XRulerTop::tickText(double value, double) const
{
    return QString::number(value, 'g', 10);
}

QString XRulerTop::endText(double value) const
{
    return tickText(value, extent());
}

QString XRulerTop::longestTickText(double) const
{
    return QStringLiteral("-0.000000001");
}

bool XRulerTop::hasRoom() const
{
    return extent() > 0 && placeAt(visibleStop()) - placeAt(visibleStart()) >= 2;
}

// A greater distance may have shorter texts, so it is looked for from below.
double XRulerTop::labelledDistance() const
{
    const double perPixel = extent() / (placeAt(visibleStop()) - placeAt(visibleStart()));
    double distance = tickDistance(perPixel * gapBetweenTexts);
    for (;;) {
        const double room = perPixel * (fontMetrics().horizontalAdvance(longestTickText(distance)) + gapBetweenTexts);
        if (distance >= room || distance >= extent()) {
            return distance;
        }
        const double next = tickDistance(std::min(room, distance * 1.01));
        if (next <= distance) {
            return tickDistance(room);
        }
        distance = next;
    }
}

// The smallest round distance of which a tick with a text is a multiple; the distance itself where there is none.
double XRulerTop::smallDistance(double distance) const
{
    const double perPixel = extent() / (placeAt(visibleStop()) - placeAt(visibleStart()));
    return partOf(distance, perPixel * gapBetweenSmallTicks, [this](double least) { return tickDistance(least); });
}

// No more than there are pixels, because adding a distance that is too small for a large number never arrives.
std::vector<double> XRulerTop::ticksOf(double distance) const
{
    std::vector<double> found;
    double tick = firstTick(visibleStart(), distance);
    for (int i = 0; i <= width() && tick <= visibleStop(); ++i) {
        if (tick >= visibleStart() && (found.empty() || tick > found.back())) {
            found.push_back(tick);
        }
        tick = nextTick(tick, distance);
    }
    return found;
}

std::vector<double> XRulerTop::ticks() const
{
    return hasRoom() ? ticksOf(labelledDistance()) : std::vector<double>();
}

XRulerTop::Label XRulerTop::labelAt(double value, const QString& text) const
{
    const int textWidth = fontMetrics().horizontalAdvance(text);
    const double left = std::clamp(placeAt(value) - textWidth / 2.0, 0.0, double(std::max(width() - textWidth, 0)));
    return {text, left};
}

std::vector<XRulerTop::Label> XRulerTop::endLabels() const
{
    const Label start = labelAt(visibleStart(), endText(visibleStart()));
    const Label stop = labelAt(visibleStop(), endText(visibleStop()));
    const double end = start.left + fontMetrics().horizontalAdvance(start.text);
    return stop.left >= end + gapBetweenTexts ? std::vector{start, stop} : std::vector{start};
}

std::vector<XRulerTop::Label> XRulerTop::labels() const
{
    if (!hasRoom()) {
        return {};
    }
    const double distance = labelledDistance();
    const std::vector<double> values = ticksOf(distance);
    if (values.size() < 2) {
        return endLabels();
    }
    std::vector<Label> found;
    double free = 0;
    for (const double value : values) {
        const Label label = labelAt(value, tickText(value, distance));
        if (label.left >= free) {
            free = label.left + fontMetrics().horizontalAdvance(label.text) + gapBetweenTexts / 2.0;
            found.push_back(label);
        }
    }
    return found;
}

void XRulerTop::paintTicks(QPainter& painter, const PixelGrid& grid, const std::vector<double>& values,
                           int length) const
{
    const QColor color = palette().color(QPalette::WindowText);
    for (const double value : values) {
        painter.fillRect(grid.vertical(placeAt(value), rulerHeight() - length, rulerHeight()), color);
    }
}

void XRulerTop::paintRuler(QPainter& painter) const
{
    if (!hasRoom()) {
        return;
    }
    const PixelGrid grid(painter);
    const double distance = labelledDistance();
    const std::vector<double> values = ticksOf(distance);
    paintTicks(painter, grid, values, tickLength);
    if (values.size() > 1) {
        paintTicks(painter, grid, ticksOf(smallDistance(distance)), smallTickLength);
    }
    painter.setPen(palette().color(QPalette::WindowText));
    for (const Label& label : labels()) {
        painter.drawText(QPointF(label.left, rulerTop() + fontMetrics().ascent()), label.text);
    }
}
