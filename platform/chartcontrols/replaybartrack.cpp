#include <chartcontrols/replaybartrack_p.h>

#include <mapwidgets/axiscolours.h>
#include <mapwidgets/pixelgrid.h>

#include <QFontMetrics>
#include <QPainter>
#include <QString>

#include <algorithm>

QColor ReplayBarTrack::color(QPalette::ColorRole role) const
{
    return palette.color(isEnabled ? QPalette::Active : QPalette::Disabled, role);
}

QRectF ReplayBarTrack::frame() const
{
    return area.adjusted(0, 0, 1, 1);
}

void ReplayBarTrack::paintFrame(QPainter& painter, const QColor& ground) const
{
    const PixelGrid grid(painter);
    const QRectF track = grid.rect(frame());
    const double line = grid.width(1);
    painter.fillRect(track, color(hasFocus ? QPalette::Highlight : QPalette::Mid));
    painter.fillRect(track.adjusted(line, line, -line, -line), ground);
}

void ReplayBarTrack::paintRecording(QPainter& painter) const
{
    paintFrame(painter, color(QPalette::Base));
}

void ReplayBarTrack::paintEmpty(QPainter& painter, const QString& reason) const
{
    paintFrame(painter, color(QPalette::Window));
    painter.setPen(palette.color(QPalette::Disabled, QPalette::WindowText));
    painter.drawText(PixelGrid(painter).rect(frame()), Qt::AlignCenter, reason);
}

void ReplayBarTrack::paintTick(QPainter& painter, double place) const
{
    const PixelGrid grid(painter);
    QColor pale = color(QPalette::WindowText);
    pale.setAlphaF(0.12F);
    painter.fillRect(grid.vertical(place, area.top() + grid.width(1), area.bottom()), pale);
}

void ReplayBarTrack::paintRange(QPainter& painter, double from, double to) const
{
    if (from > area.right() || to < area.left()) {
        return;
    }
    const PixelGrid grid(painter);
    const QColor edge = color(QPalette::Highlight);
    QColor inside = edge;
    inside.setAlphaF(axiscolours::isDark(palette) ? 0.55F : 0.3F);
    const double left = std::max(from, area.left());
    const double right = std::min(to, area.right());
    painter.fillRect(grid.rect({left, area.top(), right - left + 1, area.height()}), inside);
    for (const double place : {from, to}) {
        if (place >= area.left() && place <= area.right()) {
            painter.fillRect(grid.vertical(place, area.top(), area.bottom()), edge);
        }
    }
}
