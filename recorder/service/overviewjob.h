#pragma once

#include <recorder/service/samplefile.h>
#include <recorder/service/spectrum.h>
#include <recorder/store/devicestore.h>
#include <recorder/store/recordtimeline.h>

#include <zelkobase/service/overviewline.h>
#include <zelkobase/service/servicestatus.h>

#include <QByteArray>

#include <functional>
#include <memory>
#include <stop_token>

namespace ZelkoRecorder {

/// What a client wants of an overview, as it said it: any numbers may stand here.
struct OverviewWish
{
    QString device;
    QString record;
    qint64 start = 0; ///< microseconds since the epoch; both of them 0: the whole record
    qint64 stop = 0;
    qint64 lineCount = 0; ///< 0: as many as fit without overlap
    int fftLength = 0;    ///< samples of a line: a power of two
    SpectrumWindow window = SpectrumWindow::Rectangular;
    std::string host; ///< where the lines go to: the address of the client that asks; empty: that
    quint16 port = 0;
};

/// Makes the lines of one overview. For one thread at a time; needs some MiB whatever the record.
///
/// The samples of the time that was asked for are shared out evenly among the lines, and a line has the strongest
/// levels of all spectra whose middle lies in its share. Where the shares are shorter than a spectrum each line is one
/// spectrum, the first from the first sample on and the last up to the last, so that they overlap evenly. Time, centre
/// frequency and span of a line are those of its first sample, whatever the index says of later ones.
class OverviewJob
{
public:
    static constexpr qint64 mostLines = ZelkoCommon::OverviewLine::mostLines;

    /// Takes a datagram; false to end the overview.
    using Send = std::function<bool(const QByteArray& datagram)>;

    /// Looks at wish and record without making anything. Blocks for as long as the disk takes.
    OverviewJob(const DeviceStore& store, const ZELKO_XML::ZELKO_RecordData& record, const OverviewWish& wish);
    ~OverviewJob();

    /// What the look has found: None, or why `run` is not to be called.
    ZelkoCommon::ServiceStatus status() const { return m_status; }

    quint32 lineCount() const { return m_lineCount; }

    /// Makes all lines, once. False if `send`, `stop` or the disk ended it; `stop` is looked at all the time.
    bool run(const Send& send, const std::stop_token& stop = {});

private:
    ZelkoCommon::ServiceStatus look(const OverviewWish& wish);
    bool countLines(const OverviewWish& wish);
    bool makeLine(quint32 line, const std::stop_token& stop);
    bool takeSpectrum(quint64 frame, const std::stop_token& stop);
    bool sendLine(quint32 line, const Send& send);
    bool linesOverlap() const;
    quint64 frameOf(quint32 line) const;
    quint64 offsetOf(quint64 frame) const { return m_begin + frame * m_timeline.bytesPerFrame(); }
    quint64 lastSpectrum() const { return m_frames - m_spectrum->length(); }

    const ZELKO_XML::ZELKO_RecordData m_record;
    const RecordTimeline m_timeline;
    const quint64 m_cookie;
    const std::optional<SpectrumSamples> m_format;
    SampleFile m_samples;
    std::unique_ptr<Spectrum> m_spectrum;
    quint64 m_begin = 0; // bytes
    quint64 m_frames = 0;
    quint64 m_next = 0; // frame at which the next spectrum begins
    quint32 m_lineCount = 0;
    ZelkoCommon::ServiceStatus m_status;
};

} // namespace ZelkoRecorder
