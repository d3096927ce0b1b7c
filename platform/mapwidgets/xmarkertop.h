#pragma once

#include <controlwidgets/markerlist.h>
#include <mapwidgets/mapwidgets_export.h>

#include <QColor>
#include <QPointF>

#include <memory>
#include <vector>

class AxisBase;
class MarkerFlags;
class PixelGrid;
class QKeyEvent;
class QMouseEvent;
class QPainter;
class QRectF;
struct MarkerFlag;

/// The markers of a horizontal axis, and what a user does with them. Some are flags with their names along the top of
/// the area of the markers; the others are lines with a handle at the bottom of it.
///
/// The mouse drags; Escape takes a drag back, and so does a mouse that comes back without its button held. Of the
/// current marker, Left and Right move it by the time of about a pixel, with Shift by a tenth of it, Page Up and Page
/// Down by a tenth of what is shown, Home and End to the ends; Ctrl with Left and Right makes the marker before or
/// behind it the current one, also where it is not seen itself. Places are found once for as long as nothing changes,
/// and markers on the same pixel are painted and found as one, so that thousands of them cost no more than there are
/// pixels.
class MAPWIDGETS_EXPORT XMarkerTop : public MarkerList
{
public:
    ~XMarkerTop() override;

    /// The marker at a place of the widget; the current one where there are several, otherwise the one drawn last. 0
    /// for none.
    int markerAt(QPointF place) const;

    /// The numbers of all markers on the pixel of a flag, ascending; the marker alone if it is no flag or not shown.
    std::vector<int> markersBeside(int number) const;

    /// What a user does who moves the marker: held within the axis, and shown. False if he may not at this moment.
    bool moveTo(int number, double position);

    /// The same by so many steps of Right, or of Left where they are negative.
    bool moveBySteps(int number, int steps);

protected:
    /// `axis` is the widget that the markers stand on, which outlives this object.
    explicit XMarkerTop(AxisBase& axis);

    void paintMarkers(QPainter& painter) const;

    /// True if the event was for a marker.
    bool grabMarker(const QMouseEvent& event);
    bool dragMarker(const QMouseEvent& event);
    bool dropMarker(const QMouseEvent& event);
    bool keyOnMarker(const QKeyEvent& event);

    /// Number of the marker that the mouse holds; 0 for none.
    int draggedMarker() const { return m_dragged; }

    /// Takes the marker out of the mouse's hold: it stays where it is until it is grabbed again.
    void endDrag() { m_dragged = 0; }

    /// The same, and puts it back where it was grabbed.
    void cancelDrag();

    /// The nearest marker shown on the whole axis before a marker (`direction` -1) or behind it (1), wherever that one
    /// is and whether or not it is shown; 0 for none.
    int nextMarker(int number, int direction) const;

    /// Whether a user may move the marker at this moment; not where its value is locked.
    bool canBeMoved(int number) const;

    /// Height of the flags.
    int flagHeight() const;

    /// Has places found anew. To be called where the axis has become another; a marker that changes does so by itself.
    void forgetPlaces();

    void markerChanged(int number, bool moved) override;

    /// A user has moved the marker, which stands at `position` now; of a drag, each time.
    virtual void markerMovedByUser(int number, double position) = 0;

    /// A drag has ended in the place where the marker is now.
    virtual void markerDropped(int number) = 0;

    /// Where the area of the markers begins, in pixels from the top edge. It ends at the bottom edge.
    virtual int markerTop() const = 0;

    virtual bool isFlag(int number) const = 0;
    virtual QColor markerColor(int number) const = 0;

    /// What is written when a user moves a marker to a position.
    virtual double roundedPosition(double position) const { return position; }

    /// How far the arrow keys move, of something like `least`.
    virtual double keyStep(double least) const = 0;

private:
    bool isOnAxis(const Marker& marker) const;
    const std::vector<MarkerFlag>& flags() const;
    const std::vector<int>& handles() const;
    void findFlags() const;
    MarkerFlag unfolded(const MarkerFlag& flag) const;
    MarkerFlag besides(const MarkerFlag& flag, const MarkerFlag& onTop) const;
    const MarkerFlag* flagOf(int number) const;
    int clothAt(QPointF place) const;
    int handleAt(QPointF place) const;
    int poleAt(QPointF place) const;
    QColor paintColor(int number) const;
    void paintFlag(QPainter& painter, const PixelGrid& grid, const MarkerFlag& flag) const;
    void paintHandle(QPainter& painter, const PixelGrid& grid, int number) const;
    bool moveByUser(int number, double position);
    bool moveCurrent(const QKeyEvent& event);
    double arrowStep(int partsOfPixel) const;
    double target(const QKeyEvent& event, double position) const;
    double heldOnAxis(double position) const;
    bool chooseNext(int direction);

    struct Places;

    AxisBase& m_axis;
    const std::unique_ptr<Places> m_places;
    int m_dragged = 0;       // number of the marker that the mouse holds
    double m_pressedAt = 0;  // of the mouse, when it took the marker
    double m_grabOffset = 0; // of the mouse from the marker's place
    double m_grabbedPosition = 0;
    bool m_hasMoved = false;
};
