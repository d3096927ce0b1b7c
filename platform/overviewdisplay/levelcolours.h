#pragma once

#include <overviewdisplay/overviewdisplay_export.h>

#include <QColor>

#include <vector>

class QPalette;

namespace SPECTRUM_OVERVIEW {

/// The colours of levels: from dark for weak to bright for strong, in steps that look alike everywhere, so that no
/// level stands out that is no stronger than its neighbours.
class OVERVIEWDISPLAY_EXPORT LevelColours
{
public:
    /// From the level of the darkest colour to that of the brightest, in dB; what lies outside has the nearest one.
    /// `missing` is the colour of `OverviewLevels::noLevel`.
    LevelColours(double lowest, double highest, QRgb missing);

    double lowest() const { return m_lowest; }
    double highest() const { return m_highest; }
    QRgb missing() const { return m_missing; }

    /// Of a level in hundredths of a dB.
    QRgb of(qint16 level) const { return m_colours[static_cast<std::size_t>(level - lowestNumber)]; }

    /// Of a place on the scale, 0 the darkest, 1 the brightest; held between them, and 0 for what is no number.
    static QRgb at(double share);

    /// What has not arrived: a grey, which no level has, and which stands off from the ground of the palette as well.
    static QColor missingIn(const QPalette& palette);

private:
    static constexpr int lowestNumber = -32768;

    double m_lowest;
    double m_highest;
    QRgb m_missing;
    std::vector<QRgb> m_colours; ///< of every number that a level may be
};

} // namespace SPECTRUM_OVERVIEW
