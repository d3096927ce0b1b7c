#pragma once

#include <controlwidgets/markerlist.h>
#include <mapwidgets/mapwidgets_export.h>

#include <QColor>
#include <QPoint>

#include <vector>

class AxisBase;
class QKeyEvent;
class QMouseEvent;
class QPainter;

/// The markers of a horizontal axis with their heads at a line below its top edge, and what a user does with them: the
/// mouse drags, arrow keys move the current one pixel by pixel, Ctrl and arrow keys choose another.
class MAPWIDGETS_EXPORT XMarkerTop : public MarkerList
{
public:
    ~XMarkerTop() override;

protected:
    /// `axis` is the widget that the markers stand on, which outlives this object.
    explicit XMarkerTop(AxisBase& axis);

    /// The marker whose head is at a place, the one drawn last where there are several; 0 for none.
    int markerAt(QPoint place) const;

    void paintMarkers(QPainter& painter) const;

    /// True if the event was for a marker.
    bool grabMarker(const QMouseEvent& event);
    bool dragMarker(const QMouseEvent& event);
    bool dropMarker(const QMouseEvent& event);
    bool stepMarker(const QKeyEvent& event);

    /// Number of the marker that the mouse holds; 0 for none.
    int draggedMarker() const { return m_dragged; }

    /// Takes the marker out of the mouse's hold: it stays where it is until it is grabbed again.
    void endDrag() { m_dragged = 0; }

    /// Where the line of the heads is, in pixels from the top edge.
    virtual int markerTop() const = 0;

    virtual QColor markerColor(int number) const = 0;

private:
    void paintMarker(QPainter& painter, int number) const;
    bool canBeMoved(int number) const;
    bool moveCurrent(int pixels);
    bool chooseNext(int direction);
    std::vector<int> visibleFromLeftToRight() const;

    AxisBase& m_axis;
    int m_dragged = 0;    // number of the marker that the mouse holds
    int m_grabOffset = 0; // of the mouse from the marker's place
};
