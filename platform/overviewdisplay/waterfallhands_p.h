#pragma once

#include <overviewdisplay/waterfallscene_p.h>

class QContextMenuEvent;
class QHelpEvent;
class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace SPECTRUM_OVERVIEW {

/// What users do to a waterfall with mouse and keyboard. The handlers tell whether the event was for them.
class WaterfallHands
{
public:
    WaterfallHands(WaterfallView& view, WaterfallScene& scene);

    bool press(const QMouseEvent& event);
    bool move(const QMouseEvent& event);
    bool release(const QMouseEvent& event);
    bool doubleClick(const QMouseEvent& event);
    bool turn(const QWheelEvent& event);
    bool key(const QKeyEvent& event);
    bool openMenu(const QContextMenuEvent& event);
    void showToolTip(const QHelpEvent& event);

    /// The program has chosen another range.
    void letGo();

private:
    bool isOnPicture(const QPointF& place) const;
    std::optional<quint64> otherEdge(const QPointF& place) const;
    quint64 edgeTime(const QPointF& place) const;
    void grabSelection(const QPointF& place);
    void drag(const QPointF& place);
    void click(const QPointF& place);
    void showShape(const QPointF& place);

    int rowStep() const;
    int columnStep() const;
    bool moveKey(const QKeyEvent& event);
    bool pageKey(const QKeyEvent& event);
    void moveBy(int columns, int rows, bool doesSelect);
    void moveTo(int column, int row, bool doesSelect);
    void select(quint64 from, quint64 to);
    bool zoomKey(const QKeyEvent& event);
    bool otherKey(const QKeyEvent& event);
    bool escape();
    void announce(bool doesSelect);

    quint64 centre() const;
    double centreShare() const;
    void zoom(quint64 centre, double factor);
    void ask(const TimeRange& range);
    void askWhole();

    WaterfallView& m_view;
    WaterfallScene& m_scene;
    std::optional<QPointF> m_pressed; ///< where the left button went down and no drag has begun yet
    std::optional<quint64> m_anchor;  ///< where a selection with the keys began
    int m_turned = 0;                 ///< of the wheel, since the last whole step
};

} // namespace SPECTRUM_OVERVIEW
