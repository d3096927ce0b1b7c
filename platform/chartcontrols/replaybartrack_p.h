#pragma once

#include <QPalette>
#include <QRectF>

class QPainter;
class QString;

/// What the markers of a replay bar stand on: the recording as a frame from its start to its stop, with lines where the
/// ruler has its ticks, and the ranges of it that are highlighted.
struct ReplayBarTrack
{
    QPalette palette;
    bool isEnabled = true;
    bool hasFocus = false;
    QRectF area; ///< of the widget; its right and bottom edges are the last places that belong to it

    void paintRecording(QPainter& painter) const;

    /// In place of a recording: why there is none.
    void paintEmpty(QPainter& painter, const QString& reason) const;

    void paintTick(QPainter& painter, double place) const;

    /// From a place to another one at or behind it, as far as the area goes; of one that begins or ends beyond it no
    /// edge is seen there.
    void paintRange(QPainter& painter, double from, double to) const;

private:
    QColor color(QPalette::ColorRole role) const;
    void paintFrame(QPainter& painter, const QColor& ground) const;
    QRectF frame() const;
};
