#pragma once

#include <overviewdisplay/overviewloader.h>
#include <overviewdisplay/waterfallview.h>

#include <zelkobase/data/zelko_recorddata.h>

#include <optional>

namespace SPECTRUM_OVERVIEW {

struct OverviewSettings;

/// Samples one behind the other, with no hole in time between them.
struct SampleRun
{
    TimeRange time;
    double samples = 0;
};

/// What an overview needs to know of a record.
struct OverviewFacts
{
    enum class Lack {
        Nothing,    ///< there is a spectrum to be shown
        Samples,    ///< it has none
        SampleRate, ///< it is not known, so neither are the frequencies
        Length      ///< it is shorter than one spectrum of any length that can be chosen
    };

    OverviewFacts() = default;
    explicit OverviewFacts(const ZELKO_XML::ZELKO_RecordData& record);

    QString name;
    TimeRange extent;        ///< from the first sample to behind the last
    double sampleRate = 0;   ///< the highest that it has, in hertz
    QVector<SampleRun> runs; ///< of the index, in order; without one the samples lie evenly over the extent
    quint64 size = 0;        ///< bytes
    bool canBeCopied = true;
    QVector<ZELKO_XML::BookmarkEntry> bookmarks;

    Lack lack() const;

    /// Whether it lies in the record.
    bool has(quint64 time) const { return extent.start <= time && time < extent.stop; }

    /// Whether all of it does.
    bool has(const TimeRange& range) const { return extent.start <= range.start && range.stop <= extent.stop; }

    /// Samples in a range of time; none in a hole.
    double samplesIn(const TimeRange& range) const;

    /// The range, as far as it lies in the record, and no shorter than one spectrum, if the record is not.
    TimeRange within(const TimeRange& range, quint32 fftLength) const;

    /// What to ask for to see a range of the record in a view with room for so many lines. Nothing where there are
    /// fewer samples than a spectrum has.
    std::optional<OverviewWish> wish(const TimeRange& range, const OverviewSettings& settings, int room) const;

    /// How long a line of that answer may take: recorders read all samples of a line before they send it.
    std::chrono::milliseconds patience(const OverviewWish& wish) const;
};

} // namespace SPECTRUM_OVERVIEW
