#pragma once

#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>

class QFontMetrics;

namespace SPECTRUM_OVERVIEW {

/// Where the parts of a waterfall are in its window.
struct WaterfallLayout
{
    /// `pixelRatio`: pixels of the screen on each of the window's. `rulerHeight`: of the axis of frequency.
    WaterfallLayout(const QSize& window, const QFontMetrics& metrics, int rulerHeight, double pixelRatio);
    WaterfallLayout() = default;

    /// The smallest window that all parts have room in, and a picture of this size.
    static QSize around(const QSize& picture, const QFontMetrics& metrics, int rulerHeight);

    double ratio = 1;
    int rulerTop = 0; ///< below the headline
    QRect pixels;     ///< of the picture, in pixels of the screen; empty where there is no room
    QRectF plot;      ///< the same in pixels of the window
    QRectF scale;     ///< of the colours
    QRectF missing;   ///< the sample of the colour of what has not arrived
    double right = 0; ///< edge of what stands beside the scale

    /// Rows and columns of the picture, held within it.
    int rowAt(double y) const;
    int columnAt(double x) const;

    /// The edge between rows that is nearest.
    int edgeAt(double y) const;

    /// Of an edge between rows, in pixels of the window.
    double yOf(double edge) const { return plot.top() + edge / ratio; }
    double xOf(double edge) const { return plot.left() + edge / ratio; }
};

} // namespace SPECTRUM_OVERVIEW
