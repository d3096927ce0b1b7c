#pragma once

#include <controlwidgets/controlwidgets_export.h>

#include <QWidget>

/// A widget along whose width a range of numbers runs. The numbers stand in equal distances between two borders.
class CONTROLWIDGETS_EXPORT AxisBase : public QWidget
{
    Q_OBJECT

public:
    explicit AxisBase(QWidget* parent = nullptr);
    ~AxisBase() override;

    /// The whole range; one other than before is shown whole, the same one leaves the part that is shown. An axis
    /// without extent has all numbers at its left border. Where `stop` is below `start`, or one is no number, the axis
    /// has no extent.
    void SetAxisRange(double start, double stop);
    double axisStart() const { return m_start; }
    double axisStop() const { return m_stop; }

    /// The part that is shown; the whole range unless the user has zoomed.
    double visibleStart() const { return m_visibleStart; }
    double visibleStop() const { return m_visibleStop; }

    /// Space in pixels beside the axis, left and right.
    void SetPixOffset(int left, int right);

    /// Whether the user may zoom with the wheel of the mouse; this axis only knows the first one. Without it the whole
    /// range is shown.
    void SetAxisZoomEnable(bool horizontal, bool vertical);

    /// The place of a number, also one that is not shown; far beyond the borders it is held there. What is no
    /// number has its place at the left border.
    int pixelAt(double value) const;

    /// The same between the pixels.
    double placeAt(double value) const;

    /// The place where the axis ends, also one without extent.
    double rightBorder() const { return m_leftOffset + axisWidth(); }

    /// The number at a place, held within the part that is shown.
    double valueAt(double place) const;

    /// Moves the part that is shown, if need be, so that a number of the whole range is in it.
    void reveal(double value);

Q_SIGNALS:
    /// Another range, or another part of it.
    void signalAxisChanged();

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    double axisWidth() const;
    void showPart(double start, double stop);
    void zoom(double centre, double factor);

    double m_start = 0;
    double m_stop = 0;
    double m_visibleStart = 0;
    double m_visibleStop = 0;
    int m_leftOffset = 0;
    int m_rightOffset = 0;
    bool m_isZoomEnabled = true;
};
