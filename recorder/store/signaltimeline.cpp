#include <recorder/store/signaltimeline.h>

#include <algorithm>

namespace ZelkoRecorder {

SignalTimeline::SignalTimeline(const SourceDescription& description, quint64 fallbackStart)
    : m_description(description)
    , m_fallbackStart(fallbackStart)
{}

// The last segment with a time of its own counts; frames in segments behind it follow from the sample rate.
quint64 SignalTimeline::timeAt(qint64 frame) const
{
    qsizetype dated = segmentAt(frame);
    while (dated > 0 && m_description.segments.at(dated).startTime == 0) {
        --dated;
    }
    const SourceSegment& segment = m_description.segments.at(dated);
    const quint64 base = segment.startTime == 0 ? m_fallbackStart : segment.startTime;
    return base + m_description.microsecondsAt(frame - segment.frame);
}

ZELKO_XML::IndexEntry SignalTimeline::indexEntryAt(qint64 frame) const
{
    ZELKO_XML::IndexEntry entry;
    entry.SetTimestamp(timeAt(frame));
    entry.SetRecordOffset(static_cast<quint64>(frame) * static_cast<quint64>(m_description.format.bytesPerFrame()));
    entry.SetTunerFrequency(m_description.segments.at(segmentAt(frame)).centreFrequency);
    entry.SetSampleRate(m_description.sampleRate);
    entry.SetBandwidth(m_description.bandwidth);
    return entry;
}

qint64 SignalTimeline::nextSegment(qint64 frame) const
{
    const qsizetype next = segmentAt(frame) + 1;
    return next < m_description.segments.size() ? m_description.segments.at(next).frame : -1;
}

qsizetype SignalTimeline::segmentAt(qint64 frame) const
{
    const auto& segments = m_description.segments;
    const auto behind = std::upper_bound(segments.cbegin(), segments.cend(), frame,
                                         [](qint64 f, const SourceSegment& segment) { return f < segment.frame; });
    return std::max<qsizetype>(behind - segments.cbegin() - 1, 0);
}

} // namespace ZelkoRecorder
