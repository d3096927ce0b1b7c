#pragma once

#include <recorder/service/spectrum.h>
#include <recorder/store/devicestore.h>
#include <recorder/store/recordtimeline.h>

#include <zelkobase/service/overviewline.h>
#include <zelkobase/service/servicestatus.h>

#include <QByteArray>
#include <QFile>

#include <functional>
#include <memory>

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

/// Makes the lines of one overview. For one thread at a time.
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

    /// Makes all lines, evenly over the time that was asked for. False if `send` or the disk ended it.
    bool run(const Send& send);

private:
    ZelkoCommon::ServiceStatus look(const OverviewWish& wish);
    bool countLines(const OverviewWish& wish);
    bool sendLine(quint32 line, const Send& send);
    quint64 offsetOf(quint32 line) const;

    const ZELKO_XML::ZELKO_RecordData m_record;
    const RecordTimeline m_timeline;
    const quint64 m_cookie;
    QFile m_samples;
    std::unique_ptr<Spectrum> m_spectrum;
    quint64 m_begin = 0; // bytes
    quint64 m_end = 0;
    quint32 m_lineCount = 0;
    ZelkoCommon::ServiceStatus m_status;
};

} // namespace ZelkoRecorder
