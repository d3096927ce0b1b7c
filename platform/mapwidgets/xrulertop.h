#pragma once

#include <controlwidgets/axisbase.h>
#include <mapwidgets/mapwidgets_export.h>

#include <vector>

class PixelGrid;
class QPainter;

/// An axis with a ruler along its top edge: a line with ticks, and above them their texts.
class MAPWIDGETS_EXPORT XRulerTop : public AxisBase
{
    Q_OBJECT

public:
    explicit XRulerTop(QWidget* parent = nullptr);
    ~XRulerTop() override;

    /// Where the line of the ruler is, in pixels from the top edge.
    int rulerHeight() const;

protected:
    /// A text of the ruler, and the place of its left end.
    struct Label
    {
        QString text;
        double left = 0;
    };

    /// Draws line, ticks and texts. As many ticks as there is room for; none on an axis without extent.
    void paintRuler(QPainter& painter) const;

    /// The texts as they are drawn, from left to right, none over another. Where there is no room for two ticks they
    /// tell both ends of what is shown, or its start alone.
    std::vector<Label> labels() const;

    /// Ticks that have texts, ascending; empty on an axis without extent.
    std::vector<double> ticks() const;

    /// What stands above the ruler, in pixels.
    virtual int rulerTop() const;

    /// The smallest distance between ticks that is round and at least `least`: 1, 2 or 5 times a power of ten.
    virtual double tickDistance(double least) const;

    /// Where the first tick at or behind `value` stands.
    virtual double firstTick(double value, double distance) const;

    /// The tick behind a tick.
    virtual double nextTick(double tick, double distance) const;

    virtual QString tickText(double value, double distance) const;

    /// The text of an end of what is shown.
    virtual QString endText(double value) const;

    /// A text as long as any that tickText() gives at that distance.
    virtual QString longestTickText(double distance) const;

private:
    double extent() const { return visibleStop() - visibleStart(); }
    bool hasRoom() const;
    double labelledDistance() const;
    double smallDistance(double distance) const;
    std::vector<double> ticksOf(double distance) const;
    Label labelAt(double value, const QString& text) const;
    std::vector<Label> endLabels() const;
    void paintTicks(QPainter& painter, const PixelGrid& grid, const std::vector<double>& values, int length) const;
};
