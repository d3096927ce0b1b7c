#pragma once

#include <zelkobase/data/zelko_recorddata.h>

#include <QVector>

namespace ZelkoRecorder {

/// Bytes of one sample of a format, I and Q together; 1 where samples have no fixed size.
quint64 bytesPerSample(ZELKO_XML::ZELKO_RecordData::DataFormat format);

/// Tells which moment of a stored record stands where in its file of samples. A position of the record is an offset in
/// that file, in bytes; times are microseconds since the epoch.
///
/// It goes by the index, between whose entries time runs with the samples: a hole in time between two entries holds no
/// samples. Entries that contradict each other are left out. Without an index the record runs evenly from its start to
/// its stop.
class RecordTimeline
{
public:
    explicit RecordTimeline(const ZELKO_XML::ZELKO_RecordData& record);

    /// Between these the record has samples; the same twice if it has none.
    quint64 startTime() const { return m_points.constFirst().GetTimestamp(); }
    quint64 stopTime() const { return m_points.constLast().GetTimestamp(); }
    quint64 startOffset() const { return m_points.constFirst().GetRecordOffset(); }
    quint64 stopOffset() const { return m_points.constLast().GetRecordOffset(); }

    /// Bytes of the samples of all channels at one moment; never 0. What is cut is cut between such frames.
    quint64 bytesPerFrame() const { return m_bytesPerFrame; }

    /// Where the frame nearest to this time begins; start or stop of the record for a time outside of it. A time in a
    /// hole stands at the first sample behind it.
    quint64 offsetAt(quint64 time) const;

    /// The time of this position; start or stop of the record for one outside of it.
    quint64 timeAt(quint64 offset) const;

    /// When the samples before this position end: another time than `timeAt` where a hole begins.
    quint64 endTimeAt(quint64 offset) const;

    /// Time, offset and tuning at this position. `offset` is one between start and stop.
    ZELKO_XML::IndexEntry entryAt(quint64 offset) const;

    /// The entries of the index that it goes by, in order, with one for the start and one for the stop.
    const QVector<ZELKO_XML::IndexEntry>& points() const { return m_points; }

private:
    void takeIndex(const ZELKO_XML::ZELKO_RecordData& record);
    quint64 measureFrame(quint64 bytesPerSample) const;
    quint64 timeFrom(qsizetype point, quint64 offset) const;
    long double bytesPerMicrosecond(qsizetype point) const;

    QVector<ZELKO_XML::IndexEntry> m_points;
    quint64 m_bytesPerFrame;
};

} // namespace ZelkoRecorder
