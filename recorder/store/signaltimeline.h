#pragma once

#include <recorder/source/sourcedescription.h>

#include <zelkobase/data/indexentry.h>

namespace ZelkoRecorder {

/// Says for each frame of a signal when it was, how the receiver was tuned, and where it stands in the file of samples.
class SignalTimeline
{
public:
    /// `fallbackStart`, in microseconds since the epoch, is the time of frame 0 of a signal that has none of its own.
    SignalTimeline(const SourceDescription& description, quint64 fallbackStart);

    /// Microseconds since the epoch.
    quint64 timeAt(qint64 frame) const;

    /// Time, offset in bytes and tuning at a frame.
    ZELKO_XML::IndexEntry indexEntryAt(qint64 frame) const;

    /// The first frame behind `frame` with a new tuning; -1 if the tuning stays.
    qint64 nextSegment(qint64 frame) const;

private:
    qsizetype segmentAt(qint64 frame) const;

    const SourceDescription m_description;
    const quint64 m_fallbackStart;
};

} // namespace ZelkoRecorder
