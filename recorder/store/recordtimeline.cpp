#include <recorder/store/recordtimeline.h>

#include <algorithm>
#include <cmath>

namespace ZelkoRecorder {

using ZELKO_XML::IndexEntry;
using ZELKO_XML::ZELKO_RecordData;
using Format = ZELKO_RecordData::DataFormat;

namespace {

constexpr long double microsecondsPerSecond = 1'000'000;

// Samples come with the rate that the index says, as far as times in microseconds can tell.
constexpr long double tolerance = 0.01L;

IndexEntry point(quint64 time, quint64 offset, const IndexEntry& tuning)
{
    IndexEntry entry = tuning;
    entry.SetTimestamp(time);
    entry.SetRecordOffset(offset);
    return entry;
}

bool isBehind(const IndexEntry& entry, const IndexEntry& before)
{
    return entry.GetTimestamp() >= before.GetTimestamp() && entry.GetRecordOffset() >= before.GetRecordOffset();
}

// The last of `points` for which `isBefore` holds, but never the very last of all: a stretch begins there.
template <typename Before>
qsizetype pointBefore(const QVector<IndexEntry>& points, const Before& isBefore)
{
    const auto behind = std::partition_point(points.cbegin(), points.cend(), isBefore);
    return std::clamp<qsizetype>(behind - points.cbegin() - 1, 0, points.size() - 2);
}

} // namespace

quint64 bytesPerSample(Format format)
{
    switch (format) {
    case Format::IQ32:
    case Format::IQFloat:
        return 8;
    case Format::IQ16:
    case Format::AudioStereo:
    case Format::Real32:
        return 4;
    case Format::IQ12:
        return 3;
    case Format::IQ8:
    case Format::Real16:
    case Format::Audio16:
        return 2;
    default:
        return 1;
    }
}

RecordTimeline::RecordTimeline(const ZELKO_RecordData& record)
    : m_bytesPerFrame(bytesPerSample(record.GetDataFormat()))
{
    takeIndex(record);
    m_bytesPerFrame = measureFrame(m_bytesPerFrame);
}

// There are two points at least, so that there is always a stretch between two of them.
void RecordTimeline::takeIndex(const ZELKO_RecordData& record)
{
    QVector<IndexEntry> index = record.GetIndexEntry();
    std::stable_sort(index.begin(), index.end(), [](const IndexEntry& a, const IndexEntry& b) {
        return a.GetRecordOffset() < b.GetRecordOffset();
    });
    if (index.isEmpty()) {
        index.append(point(record.GetStartTime(), record.GetStartPosition(), IndexEntry()));
    }
    const quint64 stop = std::max(record.GetStopPosition(), record.GetSize());
    for (const IndexEntry& entry : index) {
        if (m_points.isEmpty() || (isBehind(entry, m_points.constLast()) && entry.GetRecordOffset() <= stop)) {
            m_points.append(entry);
        }
    }
    const IndexEntry end = point(record.GetStopTime(), stop, m_points.constLast());
    m_points.append(isBehind(end, m_points.constLast()) ? end : m_points.constLast());
}

// Several channels stand beside each other in a frame: the index tells how many.
quint64 RecordTimeline::measureFrame(quint64 bytesPerSample) const
{
    quint64 channels = 1;
    for (qsizetype i = 0; i + 1 < m_points.size(); ++i) {
        const auto rate = static_cast<long double>(m_points.at(i).GetSampleRate());
        const auto time = static_cast<long double>(m_points.at(i + 1).GetTimestamp() - m_points.at(i).GetTimestamp());
        const auto bytes =
            static_cast<long double>(m_points.at(i + 1).GetRecordOffset() - m_points.at(i).GetRecordOffset());
        const long double expected = rate * time / microsecondsPerSecond * static_cast<long double>(bytesPerSample);
        const long double ratio = expected > 0 ? std::round(bytes / expected) : 0;
        if (ratio > static_cast<long double>(channels) && ratio < 1000 &&
            std::abs(bytes - ratio * expected) <= tolerance * bytes) {
            channels = static_cast<quint64>(ratio);
        }
    }
    return channels * bytesPerSample;
}

// As between this point and the next; by the sample rate where samples are missing for a part of the time.
long double RecordTimeline::bytesPerMicrosecond(qsizetype at) const
{
    const IndexEntry& from = m_points.at(at);
    const IndexEntry& to = m_points.at(at + 1);
    const auto time = static_cast<long double>(to.GetTimestamp() - from.GetTimestamp());
    const auto bytes = static_cast<long double>(to.GetRecordOffset() - from.GetRecordOffset());
    const long double nominal = static_cast<long double>(from.GetSampleRate()) *
                                static_cast<long double>(m_bytesPerFrame) / microsecondsPerSecond;
    if (time == 0) {
        return 0;
    }
    const long double measured = bytes / time;
    return measured < nominal * (1 - tolerance) ? nominal : measured;
}

quint64 RecordTimeline::offsetAt(quint64 time) const
{
    if (time <= startTime() || time >= stopTime()) {
        return time <= startTime() ? startOffset() : stopOffset();
    }
    const qsizetype at =
        pointBefore(m_points, [time](const IndexEntry& entry) { return entry.GetTimestamp() <= time; });
    const auto since = static_cast<long double>(time - m_points.at(at).GetTimestamp());
    const long double frames = std::round(since * bytesPerMicrosecond(at) / static_cast<long double>(m_bytesPerFrame));
    const quint64 offset = m_points.at(at).GetRecordOffset() + static_cast<quint64>(frames) * m_bytesPerFrame;
    return std::min(offset, m_points.at(at + 1).GetRecordOffset());
}

quint64 RecordTimeline::timeAt(quint64 offset) const
{
    if (offset <= startOffset() || offset >= stopOffset()) {
        return offset <= startOffset() ? startTime() : stopTime();
    }
    return timeFrom(
        pointBefore(m_points, [offset](const IndexEntry& entry) { return entry.GetRecordOffset() <= offset; }), offset);
}

quint64 RecordTimeline::endTimeAt(quint64 offset) const
{
    if (offset <= startOffset() || offset >= stopOffset()) {
        return timeAt(offset);
    }
    return timeFrom(
        pointBefore(m_points, [offset](const IndexEntry& entry) { return entry.GetRecordOffset() < offset; }), offset);
}

quint64 RecordTimeline::timeFrom(qsizetype at, quint64 offset) const
{
    const long double rate = bytesPerMicrosecond(at);
    const auto since = static_cast<long double>(offset - m_points.at(at).GetRecordOffset());
    const auto time = m_points.at(at).GetTimestamp() + static_cast<quint64>(rate > 0 ? since / rate : 0);
    return std::min(time, m_points.at(at + 1).GetTimestamp());
}

IndexEntry RecordTimeline::entryAt(quint64 offset) const
{
    const qsizetype at =
        pointBefore(m_points, [offset](const IndexEntry& entry) { return entry.GetRecordOffset() <= offset; });
    return point(timeAt(offset), offset, m_points.at(at));
}

} // namespace ZelkoRecorder
