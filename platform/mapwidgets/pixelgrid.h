#pragma once

#include <mapwidgets/mapwidgets_export.h>

#include <QRectF>
#include <QTransform>

class QColor;
class QPainter;

/// The pixels of the screen that a painter paints on, whatever its scale is: what is snapped to them has sharp edges.
class MAPWIDGETS_EXPORT PixelGrid
{
public:
    /// The grid of `painter` as it is transformed at this moment; turned or sheared it has none to snap to.
    explicit PixelGrid(const QPainter& painter);

    /// The nearest edge between two pixels.
    double x(double x) const;
    double y(double y) const;

    /// As many whole pixels as come nearest to the length, at least one.
    double width(double width) const;
    double height(double height) const;

    /// The rectangle with each edge on the nearest between two pixels; never without extent.
    QRectF rect(const QRectF& rect) const;

    /// A line of the given thickness whose middle is as near to `x` (or `y`) as the grid allows.
    QRectF vertical(double x, double top, double bottom, double thickness = 1) const;
    QRectF horizontal(double y, double left, double right, double thickness = 1) const;

private:
    const QTransform m_toDevice;
};
