#pragma once

#include <QColor>
#include <QPalette>
#include <QRectF>

class QPainter;

namespace SPECTRUM_OVERVIEW {

class LevelColours;
struct WaterfallLayout;

/// What is painted around a waterfall and over it, with edges on the pixels of the screen.
struct WaterfallOverlay
{
    QPainter& painter;
    const WaterfallLayout& layout;
    const QPalette& palette;

    /// Just outside of the picture.
    void paintFrame(bool hasFocus) const;

    /// A ground with this text in place of the picture.
    void paintEmpty(const QString& text) const;

    /// The colours with their levels, and that of what has not arrived.
    void paintScale(const LevelColours& colours) const;

    /// Everything but the part between these rows' edges is darker; the edges may lie outside.
    void paintSelection(double first, double last) const;

    void paintCross(int column, int row) const;

    /// In place of the axis of frequency.
    void paintNoFrequencies() const;

private:
    void paintEdge(double top) const;
};

} // namespace SPECTRUM_OVERVIEW
