#pragma once

#include <recorder/source/sampleformat.h>

#include <QString>
#include <QVector>

namespace ZelkoRecorder {

/// A note about a moment or a stretch of the signal.
struct SourceMark
{
    /// First frame that is meant, 0 for the first of the signal.
    qint64 frame = 0;
    /// Length in frames; -1 if the note names none.
    qint64 frameCount = -1;
    /// Never empty, one line, and nothing in it that XML cannot carry.
    QString text;

    bool operator==(const SourceMark&) const = default;
};

/// A stretch of the signal with one tuning, up to the next segment or to the end.
struct SourceSegment
{
    /// First frame; 0 for the first segment.
    qint64 frame = 0;
    /// Hz; 0 if not known.
    quint64 centreFrequency = 0;
    /// Time of the segment's first frame in microseconds since the epoch; 0 if it follows from the frames before.
    quint64 startTime = 0;

    bool operator==(const SourceSegment&) const = default;
};

/// What is known of a signal before its first sample. Plain data; the functions may be called on any thread.
struct SourceDescription
{
    /// Largest sample rate of a source, in Hz.
    static constexpr quint64 maximumSampleRate = 1'000'000'000'000;
    /// Largest frame number a mark or a segment may name; with it no time computed below overflows.
    static constexpr qint64 maximumFrame = 1'000'000'000'000;

    /// Proposed name of a record of this signal; may be empty.
    QString name;
    SampleFormat format;
    /// Frames per second, 1 to `maximumSampleRate`.
    quint64 sampleRate = 1;
    /// Usable bandwidth in Hz.
    quint64 bandwidth = 1;
    /// Frames that will come; -1 if the signal never ends.
    qint64 totalFrames = -1;
    /// At least one, the first at frame 0, in strictly ascending order of frames. Known times never go back.
    QVector<SourceSegment> segments{SourceSegment()};
    /// In ascending order of frames.
    QVector<SourceMark> marks;

    /// Hz of the first segment; 0 if not known.
    quint64 centreFrequency() const { return segments.constFirst().centreFrequency; }

    /// Time of the first frame in microseconds since the epoch; 0 means the signal has none and begins when it is read.
    quint64 startTime() const { return segments.constFirst().startTime; }

    /// Microseconds from frame 0 to `frame` at this sample rate, rounded down. `frame` is 0 to `maximumFrame`.
    quint64 microsecondsAt(qint64 frame) const;
};

} // namespace ZelkoRecorder
