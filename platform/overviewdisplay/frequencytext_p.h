#pragma once

#include <QString>

namespace SPECTRUM_OVERVIEW {

/// Frequencies of a range as texts in one unit, the same in every locale: decimal point, no grouping.
class FrequencyText
{
public:
    /// The unit is that of the one that is farther from 0, "Hz" to "THz".
    FrequencyText(double low, double high);

    QString unit() const;

    /// In that unit, as fine as it takes to tell it from one at that distance. Empty for what is no number.
    QString number(double hertz, double distance) const;

    /// The same with the unit.
    QString text(double hertz, double distance) const;

private:
    int m_thousands = 0;
};

} // namespace SPECTRUM_OVERVIEW
