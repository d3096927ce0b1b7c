#include "overviewfacts_p.h"

#include "overviewsettings_p.h"

#include <zelkobase/data/recordextent.h>

#include <algorithm>
#include <cmath>

namespace SPECTRUM_OVERVIEW {

using ZELKO_XML::IndexEntry;
using ZELKO_XML::ZELKO_RecordData;

namespace {

constexpr double microsecondsPerSecond = 1e6;

double highestRate(const ZELKO_RecordData& record)
{
    quint64 rate = 0;
    for (const IndexEntry& entry : record.GetIndexEntry()) {
        rate = std::max(rate, entry.GetSampleRate());
    }
    return static_cast<double>(rate);
}

// The index may end before the samples do.
TimeRange extentOf(const ZELKO_RecordData& record)
{
    const ZELKO_XML::RecordExtent extent = ZELKO_XML::recordExtent(record);
    return {std::min(extent.start, record.GetStartTime()), std::max(extent.stop, record.GetStopTime())};
}

} // namespace

OverviewFacts::OverviewFacts(const ZELKO_RecordData& record)
    : name(record.GetRecordName())
    , extent(extentOf(record))
    , sampleRate(highestRate(record))
    , size(record.GetSize())
    , canBeCopied(record.GetDataRate() != ZELKO_RecordData::DataRate::RawStream)
    , bookmarks(record.GetBookmarkEntry())
{}

OverviewFacts::Lack OverviewFacts::lack() const
{
    if (extent.start >= extent.stop) {
        return Lack::Samples;
    }
    if (sampleRate <= 0) {
        return Lack::SampleRate;
    }
    return samplesIn(extent) < OverviewSettings::ShortestFft ? Lack::Length : Lack::Nothing;
}

double OverviewFacts::samplesIn(const TimeRange& range) const
{
    return static_cast<double>(range.stop - range.start) * sampleRate / microsecondsPerSecond;
}

// A microsecond more, as the recorder's cuts lie on samples and not on these.
TimeRange OverviewFacts::within(const TimeRange& range, quint32 fftLength) const
{
    const double spectrum = std::ceil(fftLength * microsecondsPerSecond / sampleRate) + 1;
    const quint64 whole = extent.stop - extent.start;
    const quint64 shortest = spectrum < static_cast<double>(whole) ? static_cast<quint64>(spectrum) : whole;
    const quint64 start = std::clamp(range.start, extent.start, extent.stop);
    const quint64 stop = std::clamp(range.stop, start, extent.stop);
    if (stop - start >= shortest) {
        return {start, stop};
    }
    const quint64 half = (shortest - (stop - start)) / 2;
    const quint64 earliest = start - extent.start > half ? start - half : extent.start;
    const quint64 first = std::min(earliest, extent.stop - shortest);
    return {first, first + shortest};
}

std::optional<OverviewWish> OverviewFacts::wish(const TimeRange& range, const OverviewSettings& settings,
                                                int room) const
{
    const double fitting = std::floor(samplesIn(range) / settings.fftLength);
    if (!(fitting >= 1)) {
        return std::nullopt;
    }
    const double most = std::min<double>(OverviewLevels::mostLines, OverviewLevels::mostLevels / settings.fftLength);
    const int wanted = settings.lineCount == 0 ? std::max(room, 1) : settings.lineCount;
    const auto lines = static_cast<quint32>(std::min({fitting, most, static_cast<double>(wanted)}));
    return OverviewWish{range.start, range.stop, lines, settings.fftLength, settings.window};
}

std::chrono::milliseconds OverviewFacts::patience(const OverviewWish& wish) const
{
    constexpr double slowestReading = 20e3; // bytes per millisecond
    const double share = static_cast<double>(wish.stop - wish.start) / static_cast<double>(extent.stop - extent.start);
    const double lineSize = static_cast<double>(size) * std::min(share, 1.0) / wish.lineCount;
    const double longest = std::chrono::milliseconds(std::chrono::hours(1)).count();
    return OverviewLoader::Silence +
           std::chrono::milliseconds(static_cast<qint64>(std::min(lineSize / slowestReading, longest)));
}

} // namespace SPECTRUM_OVERVIEW
