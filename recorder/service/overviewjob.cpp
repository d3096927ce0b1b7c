#include <recorder/service/overviewjob.h>

#include <zelkobase/data/recordfiles.h>

#include <QDir>

#include <algorithm>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::OverviewLine;
using ZelkoCommon::ServiceStatus;

OverviewJob::OverviewJob(const DeviceStore& store, const ZELKO_RecordData& record, const OverviewWish& wish)
    : m_record(record)
    , m_timeline(record)
    , m_cookie(ZelkoCommon::overviewCookie(wish.device, wish.record))
    , m_samples(QDir(store.recordFolder(record.GetRecordID()))
                    .filePath(ZELKO_XML::sampleFileName(record.GetRecordID(), record.GetDataFormat())))
    , m_status(look(wish))
{}

OverviewJob::~OverviewJob() = default;

ServiceStatus OverviewJob::look(const OverviewWish& wish)
{
    const bool isWhole = wish.start == 0 && wish.stop == 0;
    const bool isRange = isWhole || (wish.start >= 0 && wish.start < wish.stop);
    const auto order = spectrumOrder(wish.fftLength);
    if (!isRange || !order || wish.lineCount < 0 || wish.lineCount > mostLines) {
        return ServiceStatus::BadArgument;
    }
    const auto samples = spectrumSamples(m_record.GetDataFormat());
    if (!samples) {
        return ServiceStatus::NotSupported;
    }
    m_spectrum = std::make_unique<Spectrum>(*samples, *order, wish.window, m_timeline.bytesPerFrame());
    m_begin = isWhole ? m_timeline.startOffset() : m_timeline.offsetAt(static_cast<quint64>(wish.start));
    m_end = isWhole ? m_timeline.stopOffset() : m_timeline.offsetAt(static_cast<quint64>(wish.stop));
    if (!m_samples.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return ServiceStatus::DamagedRecord;
    }
    return countLines(wish) ? ServiceStatus::None : ServiceStatus::NoSamples;
}

// False where there are fewer samples than a line is made of.
bool OverviewJob::countLines(const OverviewWish& wish)
{
    m_end = std::min(m_end, static_cast<quint64>(m_samples.size()));
    if (m_end < m_begin + m_spectrum->bytes()) {
        return false;
    }
    const quint64 fitting = (m_end - m_begin) / m_spectrum->bytes();
    const quint64 wanted = wish.lineCount == 0 ? fitting : static_cast<quint64>(wish.lineCount);
    m_lineCount = static_cast<quint32>(std::min(wanted, static_cast<quint64>(mostLines)));
    return true;
}

bool OverviewJob::run(const Send& send)
{
    for (quint32 line = 0; line < m_lineCount; ++line) {
        if (!sendLine(line, send)) {
            return false;
        }
    }
    return true;
}

bool OverviewJob::sendLine(quint32 number, const Send& send)
{
    const quint64 offset = offsetOf(number);
    const auto size = static_cast<qint64>(m_spectrum->bytes());
    const QByteArray frames = m_samples.seek(static_cast<qint64>(offset)) ? m_samples.read(size) : QByteArray();
    if (frames.size() != size) {
        return false;
    }
    const ZELKO_XML::IndexEntry entry = m_timeline.entryAt(offset);
    const bool isReal = m_spectrum->bins() * m_timeline.bytesPerFrame() < m_spectrum->bytes();
    OverviewLine line;
    line.cookie = m_cookie;
    line.line = number;
    line.lineCount = m_lineCount;
    line.time = entry.GetTimestamp();
    line.span = isReal ? entry.GetSampleRate() / 2 : entry.GetSampleRate();
    line.centreFrequency = entry.GetTunerFrequency();
    for (const QByteArray& datagram : line.datagrams(m_spectrum->levels(frames.constData()))) {
        if (!send(datagram)) {
            return false;
        }
    }
    return true;
}

// The first line begins with the first sample, the last one ends with the last.
quint64 OverviewJob::offsetOf(quint32 line) const
{
    if (m_lineCount == 1) {
        return m_begin;
    }
    const quint64 frames = (m_end - m_begin - m_spectrum->bytes()) / m_timeline.bytesPerFrame();
    const long double part = static_cast<long double>(line) / (m_lineCount - 1);
    return m_begin + static_cast<quint64>(part * static_cast<long double>(frames)) * m_timeline.bytesPerFrame();
}

} // namespace ZelkoRecorder
