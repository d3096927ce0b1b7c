#pragma once

#include <controlwidgets/axisbase.h>
#include <mapwidgets/mapwidgets_export.h>

class QPainter;

/// An axis with a ruler along its top edge.
class MAPWIDGETS_EXPORT XRulerTop : public AxisBase
{
    Q_OBJECT

public:
    explicit XRulerTop(QWidget* parent = nullptr);
    ~XRulerTop() override;

    /// Height of the ruler in pixels.
    int rulerHeight() const;

protected:
    /// Draws line, ticks and texts. As many ticks as there is room for; none on an axis without extent.
    void paintRuler(QPainter& painter) const;

    /// The smallest distance between ticks that is round and at least `least`: 1, 2 or 5 times a power of ten.
    virtual double tickDistance(double least) const;

    /// Where the first tick at or behind `value` stands.
    virtual double firstTick(double value, double distance) const;

    virtual QString tickText(double value, double distance) const;

    /// A text as long as any that tickText() gives.
    virtual QString longestTickText() const;
};
