#pragma once

#include <mapwidgets/xrulertop.h>

namespace SPECTRUM_OVERVIEW {

/// The axis of frequency above a waterfall, in hertz: numbers in one unit, which stands at its left. The mouse reaches
/// what lies behind it.
class FrequencyRuler : public XRulerTop
{
public:
    explicit FrequencyRuler(QWidget* parent);
    ~FrequencyRuler() override;

    /// Numbers that count from an unknown centre say so.
    void setHasCentre(bool hasCentre);

protected:
    void paintEvent(QPaintEvent* event) override;
    QString tickText(double value, double distance) const override;
    QString longestTickText(double distance) const override;

private:
    void paintUnit(QPainter& painter) const;

    bool m_hasCentre = true;
};

} // namespace SPECTRUM_OVERVIEW
