#include <overviewdisplay/overviewlevels.h>

#include "timedistance_p.h"

#include <algorithm>
#include <iterator>

namespace SPECTRUM_OVERVIEW {

using ZelkoCommon::OverviewLine;
using ZelkoCommon::OverviewPiece;

namespace {

constexpr quint32 pieceBins = OverviewLine::mostBins;

// A sample that lies on the edge of what was asked for may be the one before it, at the lowest sample rates too.
constexpr quint64 edge = 1'000'000; // microseconds

constexpr quint64 microsecondsPerSecond = 1'000'000;

// Times are cut to microseconds, so those of two answers differ a little where samples lie closer.
constexpr quint64 rounding = 2; // microseconds

// The time, brought between these limits if it is hardly outside of them.
std::optional<quint64> between(quint64 time, quint64 lowest, quint64 highest, quint64 tolerance)
{
    const quint64 inside = std::clamp(time, lowest, highest);
    return timeDistance(time, inside) <= tolerance ? std::optional(inside) : std::nullopt;
}

using LineTime = std::map<int, quint64>::value_type;

quint64 interpolated(const LineTime& before, const LineTime& behind, int line)
{
    const long double part = static_cast<long double>(line - before.first) / (behind.first - before.first);
    return before.second + static_cast<quint64>(part * static_cast<long double>(behind.second - before.second));
}

} // namespace

void OverviewLevels::begin(const OverviewWish& wish)
{
    *this = OverviewLevels();
    m_wish = wish;
}

void OverviewLevels::beginPart(const LineRange& lines)
{
    if (lines.first >= 0 && lines.first <= lines.last && lines.last < lineCount()) {
        m_part = lines;
    }
}

bool OverviewLevels::take(const OverviewPiece& piece)
{
    if (!hasShape(piece)) {
        return false;
    }
    const int number = static_cast<int>(piece.line) + std::max(m_part.first, 0);
    const std::optional<quint64> when = fittingTime(number, piece);
    if (!when) {
        return false;
    }
    if (m_lines.empty()) {
        takeShape(piece);
    }
    Line& line = m_lines[static_cast<std::size_t>(number)];
    if (!isOfLine(line, piece)) {
        return false;
    }
    m_times.emplace(number, *when);
    fill(line, piece);
    return true;
}

bool OverviewLevels::hasShape(const OverviewPiece& piece) const
{
    const bool isFirst = m_lines.empty();
    const bool isPart = m_part.count() > 0;
    const auto wished = static_cast<quint32>(isPart ? m_part.count() : lineCount());
    const bool fitsWish = m_wish.canHave(piece.lineCount, piece.binCount) && piece.lineCount <= mostLines;
    const bool fitsFirst = piece.binCount == static_cast<quint32>(m_binCount) && piece.lineCount == wished;
    const bool isInside = piece.line < piece.lineCount && piece.binCount != 0 &&
                          piece.binCount <= mostPieces * pieceBins && piece.firstBin < piece.binCount &&
                          piece.firstBin % pieceBins == 0;
    return isInside && (isFirst ? fitsWish : fitsFirst) &&
           static_cast<quint32>(piece.levels.size()) == std::min(pieceBins, piece.binCount - piece.firstBin) &&
           static_cast<qint64>(piece.lineCount) * piece.binCount <= mostLevels;
}

// The other pieces of a line are of the same moment, and so of the same tuning.
bool OverviewLevels::isOfLine(const Line& line, const OverviewPiece& piece) const
{
    const Band band{static_cast<double>(piece.centreFrequency), static_cast<double>(piece.span)};
    return line.pieces.none() || line.band == band;
}

std::optional<quint64> OverviewLevels::fittingTime(int line, const OverviewPiece& piece) const
{
    if (m_wish.start >= m_wish.stop) {
        return std::nullopt;
    }
    const std::optional<quint64> inside = between(piece.time, m_wish.start, m_wish.stop, edge);
    const auto behind = m_times.lower_bound(line);
    if (!inside || behind == m_times.end() || behind->first != line) {
        const quint64 lowest = behind == m_times.begin() ? m_wish.start : std::prev(behind)->second;
        const quint64 highest = behind == m_times.end() ? m_wish.stop : behind->second;
        return inside ? between(*inside, lowest, highest, rounding) : std::nullopt;
    }
    return between(*inside, behind->second, behind->second, rounding + cutDifference(piece));
}

// Lines are cut between samples, and those of a part are cut anew: a sample or two beside where the whole was cut.
quint64 OverviewLevels::cutDifference(const OverviewPiece& piece) const
{
    constexpr quint64 samples = 2 * microsecondsPerSecond;
    const quint64 spans = piece.binCount < m_wish.fftLength ? 2 : 1; // in the sample rate: real samples have two
    const quint64 rate = std::min(piece.span, microsecondsPerSecond) * spans;
    return rate == 0 ? 0 : (samples + rate - 1) / rate;
}

void OverviewLevels::takeShape(const OverviewPiece& piece)
{
    m_lines.resize(piece.lineCount);
    m_binCount = static_cast<int>(piece.binCount);
    m_band = {static_cast<double>(piece.centreFrequency), static_cast<double>(piece.span)};
}

int OverviewLevels::pieceCount() const
{
    return static_cast<int>((static_cast<quint32>(m_binCount) + pieceBins - 1) / pieceBins);
}

void OverviewLevels::fill(Line& line, const OverviewPiece& piece)
{
    const std::size_t number = piece.firstBin / pieceBins;
    if (line.pieces.test(number)) {
        return;
    }
    line.levels.resize(static_cast<std::size_t>(m_binCount), noLevel);
    line.band = {static_cast<double>(piece.centreFrequency), static_cast<double>(piece.span)};
    std::copy(piece.levels.begin(), piece.levels.end(), line.levels.begin() + piece.firstBin);
    line.pieces.set(number);
    if (static_cast<int>(line.pieces.count()) == pieceCount()) {
        layInBand(line);
        line.isComplete = true;
        ++m_completeLines;
    }
}

// A receiver may have been tuned to somewhere else meanwhile.
void OverviewLevels::layInBand(Line& line) const
{
    const Band& band = line.band;
    const bool haveSpans = m_band.span > 0 && band.span > 0;
    const bool haveCentres = (m_band.centre > 0) == (band.centre > 0);
    if (band == m_band || !haveSpans || !haveCentres) {
        return;
    }
    const std::vector<qint16> own = std::move(line.levels);
    const double ratio = m_band.span / band.span;
    const double offset = (m_band.centre - m_band.span / 2 - band.centre + band.span / 2) / band.span * m_binCount;
    line.levels.assign(own.size(), noLevel);
    for (std::size_t bin = 0; bin < own.size(); ++bin) {
        const double place = offset + (static_cast<double>(bin) + 0.5) * ratio;
        if (place >= 0 && place < m_binCount) {
            line.levels[bin] = own[static_cast<std::size_t>(place)];
        }
    }
}

bool OverviewLevels::isComplete(int line) const
{
    return line >= 0 && line < lineCount() && m_lines[static_cast<std::size_t>(line)].isComplete;
}

const qint16* OverviewLevels::levels(int line) const
{
    return isComplete(line) ? m_lines[static_cast<std::size_t>(line)].levels.data() : nullptr;
}

quint64 OverviewLevels::time(int line) const
{
    const auto behind = m_times.lower_bound(line);
    if (behind != m_times.end() && behind->first == line) {
        return behind->second;
    }
    if (line <= 0 || line >= lineCount()) {
        return line <= 0 ? m_wish.start : m_wish.stop;
    }
    const LineTime first{0, m_wish.start};
    const LineTime end{lineCount(), m_wish.stop};
    return interpolated(behind == m_times.begin() ? first : *std::prev(behind), behind == m_times.end() ? end : *behind,
                        line);
}

int OverviewLevels::lineAt(quint64 time) const
{
    if (m_lines.empty() || time < m_wish.start || time >= m_wish.stop) {
        return -1;
    }
    int line = 0;
    for (int end = lineCount(); end - line > 1;) {
        const int middle = line + (end - line) / 2;
        (this->time(middle) <= time ? line : end) = middle;
    }
    return line;
}

// Without a centre the spectrum of I and Q lies around 0, that of real samples above it.
double OverviewLevels::lowestFrequency() const
{
    const bool isReal = m_binCount > 0 && static_cast<quint32>(m_binCount) < m_wish.fftLength;
    return isReal && !hasCentre() ? 0 : m_band.centre - m_band.span / 2;
}

std::vector<LineRange> OverviewLevels::gaps() const
{
    std::vector<LineRange> result;
    for (int line = 0; line < lineCount(); ++line) {
        if (isComplete(line)) {
            continue;
        }
        if (!result.empty() && result.back().last == line - 1) {
            result.back().last = line;
        } else {
            result.push_back({line, line});
        }
    }
    return result;
}

std::vector<LineRange> OverviewLevels::missing(int mostRanges) const
{
    const std::vector<LineRange> all = gaps();
    const auto most = static_cast<std::size_t>(std::max(mostRanges, 1));
    std::vector<std::size_t> cuts; // in front of these gaps a new range begins
    for (std::size_t gap = 1; gap < all.size(); ++gap) {
        cuts.push_back(gap);
    }
    std::stable_sort(cuts.begin(), cuts.end(), [&all](std::size_t a, std::size_t b) {
        return all[a].first - all[a - 1].last > all[b].first - all[b - 1].last;
    });
    cuts.resize(std::min(cuts.size(), most - 1));
    std::vector<LineRange> result;
    for (std::size_t gap = 0; gap < all.size(); ++gap) {
        if (result.empty() || std::find(cuts.begin(), cuts.end(), gap) != cuts.end()) {
            result.push_back(all[gap]);
        }
        result.back().last = all[gap].last;
    }
    return result;
}

LineRange OverviewLevels::partAround(const LineRange& lines) const
{
    return {std::max(lines.first - 1, 0), lines.last};
}

// The end is where the next line begins, of which the microsecond is known: what lies behind that, too.
OverviewWish OverviewLevels::partWish(const LineRange& part) const
{
    OverviewWish wish = m_wish;
    wish.start = part.first == 0 ? m_wish.start : time(part.first);
    wish.stop = part.last + 1 >= lineCount() ? m_wish.stop : time(part.last + 1) + 1;
    wish.lineCount = static_cast<quint32>(part.count());
    return wish;
}

} // namespace SPECTRUM_OVERVIEW
