#include <mapwidgets/pixelgrid.h>

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

double snap(double place, double scale, double shift)
{
    return (std::round(place * scale + shift) - shift) / scale;
}

double wholePixels(double length, double scale)
{
    return std::max(std::round(length * scale), 1.0) / scale;
}

QTransform gridOf(const QPainter& painter)
{
    const QTransform& transform = painter.deviceTransform();
    const bool isGrid = transform.type() <= QTransform::TxScale && transform.m11() > 0 && transform.m22() > 0;
    return isGrid ? transform : QTransform();
}

} // namespace

PixelGrid::PixelGrid(const QPainter& painter)
    : m_toDevice(gridOf(painter))
{}

double PixelGrid::x(double x) const
{
    return snap(x, m_toDevice.m11(), m_toDevice.dx());
}

double PixelGrid::y(double y) const
{
    return snap(y, m_toDevice.m22(), m_toDevice.dy());
}

double PixelGrid::width(double width) const
{
    return wholePixels(width, m_toDevice.m11());
}

double PixelGrid::height(double height) const
{
    return wholePixels(height, m_toDevice.m22());
}

QRectF PixelGrid::rect(const QRectF& rect) const
{
    const double left = x(rect.left());
    const double top = y(rect.top());
    return {left, top, std::max(x(rect.right()) - left, width(0)), std::max(y(rect.bottom()) - top, height(0))};
}

QRectF PixelGrid::vertical(double place, double top, double bottom, double thickness) const
{
    const double thick = width(thickness);
    return rect({x(place + 0.5 - thick / 2), top, thick, bottom - top});
}

QRectF PixelGrid::horizontal(double place, double left, double right, double thickness) const
{
    const double thick = height(thickness);
    return rect({left, y(place + 0.5 - thick / 2), right - left, thick});
}
