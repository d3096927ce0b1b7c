#pragma once

#include <QtGlobal>

#include <array>
#include <vector>

namespace SPECTRUM_OVERVIEW {

class OverviewLevels;

/// Finds the range of levels in which a picture shows what there is to see: from the noise to the strongest signal. In
/// steps, so that it is not another one with each line.
class AutomaticLevels
{
public:
    struct Range
    {
        int lowest; ///< dB of full scale, below the highest
        int highest;

        bool operator==(const Range&) const = default;
    };

    /// Levels of a line in hundredths of a dB, as OverviewLevels has them.
    void add(const qint16* levels, int count);

    /// The lines that are complete of these, both ends included: each of them once, however often it is among them.
    void addLines(const OverviewLevels& levels, int first, int last);

    /// As far as is known; -120 to 0 before the first line.
    Range range() const;

private:
    static constexpr int levelsPerStep = 100; // the numbers of one dB
    static constexpr int steps = 656;

    std::array<quint64, steps> m_counts{}; // levels in each step
    quint64 m_count = 0;
    std::vector<bool> m_isAdded; // by the number of the line
};

} // namespace SPECTRUM_OVERVIEW
