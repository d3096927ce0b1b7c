#include "automaticlevels_p.h"

#include <overviewdisplay/overviewlevels.h>

#include <algorithm>
#include <cmath>

namespace SPECTRUM_OVERVIEW {

namespace {

constexpr int lowestNumber = -32768;
constexpr quint64 noiseShare = 10; // one in so many levels lies below what is taken for the noise
constexpr int grid = 5;            // dB
constexpr int headRoom = 3;        // dB
constexpr int smallestRange = 30;  // dB

// The strongest of a few neighbours: a signal is seen, and most of the noise is not looked at.
constexpr int mostLooks = 512;

int rounded(int level, double (*way)(double))
{
    return static_cast<int>(way(static_cast<double>(level) / grid)) * grid;
}

} // namespace

void AutomaticLevels::add(const qint16* levels, int count)
{
    const int stride = std::max(1, count / mostLooks);
    for (int first = 0; first < count; first += stride) {
        const qint16 level = *std::max_element(levels + first, levels + std::min(first + stride, count));
        if (level != OverviewLevels::noLevel) {
            ++m_counts[static_cast<std::size_t>((level - lowestNumber) / levelsPerStep)];
            ++m_count;
        }
    }
}

void AutomaticLevels::addLines(const OverviewLevels& levels, int first, int last)
{
    m_isAdded.resize(static_cast<std::size_t>(levels.lineCount()), false);
    for (int line = std::max(first, 0); line <= std::min(last, levels.lineCount() - 1); ++line) {
        const auto number = static_cast<std::size_t>(line);
        if (!m_isAdded[number] && levels.isComplete(line)) {
            m_isAdded[number] = true;
            add(levels.levels(line), levels.binCount());
        }
    }
}

AutomaticLevels::Range AutomaticLevels::range() const
{
    if (m_count == 0) {
        return {-120, 0};
    }
    const auto levelOf = [](auto step) { return static_cast<int>(step) + lowestNumber / levelsPerStep; };
    quint64 below = 0;
    const auto noise = std::find_if(m_counts.begin(), m_counts.end(), [&](quint64 counted) {
        below += counted;
        return below * noiseShare >= m_count;
    });
    const auto strongest =
        std::find_if(m_counts.rbegin(), m_counts.rend(), [](quint64 counted) { return counted > 0; });
    const int highest = rounded(levelOf(m_counts.rend() - strongest - 1) + headRoom, &std::ceil);
    const int lowest = rounded(levelOf(noise - m_counts.begin()) - headRoom, &std::floor);
    return {std::min(lowest, highest - smallestRange), highest};
}

} // namespace SPECTRUM_OVERVIEW
