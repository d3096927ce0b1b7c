#include "overviewfacts_p.h"

#include "overviewsettings_p.h"

#include <zelkobase/data/recordextent.h>

#include <algorithm>
#include <cmath>
#include <vector>

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

// The entries of the index, and the end.
QVector<IndexEntry> pointsOf(const ZELKO_RecordData& record)
{
    QVector<IndexEntry> points = record.GetIndexEntry();
    std::stable_sort(points.begin(), points.end(),
                     [](const IndexEntry& a, const IndexEntry& b) { return a.GetTimestamp() < b.GetTimestamp(); });
    if (!points.isEmpty() && points.constLast().GetTimestamp() < record.GetStopTime()) {
        IndexEntry end = points.constLast();
        end.SetTimestamp(record.GetStopTime());
        end.SetRecordOffset(std::max(record.GetStopPosition(), record.GetSize()));
        points.append(end);
    }
    return points;
}

struct Stretch
{
    Stretch(const IndexEntry& from, const IndexEntry& to)
        : time{from.GetTimestamp(), to.GetTimestamp()}
        , most(static_cast<double>(time.stop - time.start) / microsecondsPerSecond *
               static_cast<double>(from.GetSampleRate()))
        , bytes(static_cast<double>(to.GetRecordOffset() - std::min(from.GetRecordOffset(), to.GetRecordOffset())))
    {}

    TimeRange time;
    double most; // samples that fit into it
    double bytes;
};

std::vector<Stretch> stretchesOf(const QVector<IndexEntry>& points)
{
    std::vector<Stretch> stretches;
    for (qsizetype at = 0; at + 1 < points.size(); ++at) {
        stretches.emplace_back(points.at(at), points.at(at + 1));
    }
    return stretches;
}

// Of all channels together: a stretch without a hole tells. 0 where the index does not say where samples stand.
double bytesPerSample(const std::vector<Stretch>& stretches)
{
    constexpr double fewSamples = 100; // of which times in microseconds tell nothing
    double bytes = 0;
    for (const Stretch& stretch : stretches) {
        if (stretch.most >= fewSamples) {
            bytes = std::max(bytes, std::round(stretch.bytes / stretch.most));
        }
    }
    return bytes;
}

// As recorders reckon: where samples are missing for a part of the time, they come first, and then the hole.
QVector<SampleRun> runsOf(const ZELKO_RecordData& record)
{
    constexpr double tolerance = 0.01;
    const std::vector<Stretch> stretches = stretchesOf(pointsOf(record));
    const double size = bytesPerSample(stretches);
    QVector<SampleRun> runs;
    for (const Stretch& stretch : stretches) {
        const double samples = size > 0 ? stretch.bytes / size : stretch.most;
        const double share = stretch.most > 0 ? samples / stretch.most : 0;
        const auto length = static_cast<double>(stretch.time.stop - stretch.time.start);
        const bool hasHole = share < 1 - tolerance;
        const quint64 stop = stretch.time.start + static_cast<quint64>(length * share);
        runs.append({{stretch.time.start, hasHole ? stop : stretch.time.stop}, samples});
    }
    return runs;
}

} // namespace

OverviewFacts::OverviewFacts(const ZELKO_RecordData& record)
    : name(record.GetRecordName())
    , extent(extentOf(record))
    , sampleRate(highestRate(record))
    , runs(runsOf(record))
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
    if (runs.isEmpty()) {
        return static_cast<double>(range.stop - range.start) * sampleRate / microsecondsPerSecond;
    }
    double samples = 0;
    for (const SampleRun& run : runs) {
        const quint64 start = std::max(run.time.start, range.start);
        const quint64 stop = std::min(run.time.stop, range.stop);
        if (start < stop) {
            const auto whole = static_cast<double>(run.time.stop - run.time.start);
            samples += run.samples * static_cast<double>(stop - start) / whole;
        }
    }
    return samples;
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
    const qint64 most = std::min<qint64>(OverviewLevels::mostLines, OverviewLevels::mostLevels / settings.fftLength);
    const int wanted = settings.lineCount == 0 ? std::max(room, 1) : settings.lineCount;
    const auto lines =
        static_cast<quint32>(std::min({fitting, static_cast<double>(most), static_cast<double>(wanted)}));
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
