#include <recorder/service/overviewjob.h>

#include <zelkobase/data/recordfiles.h>

#include <QDir>

#include <algorithm>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::OverviewLine;
using ZelkoCommon::ServiceStatus;

namespace {

// Share `number` of `count` even ones of a whole begins there.
quint64 beginOfShare(quint64 whole, quint64 number, quint64 count)
{
    return whole / count * number + whole % count * number / count;
}

} // namespace

OverviewJob::OverviewJob(const DeviceStore& store, const ZELKO_RecordData& record, const OverviewWish& wish)
    : m_record(record)
    , m_timeline(record)
    , m_cookie(ZelkoCommon::overviewCookie(wish.device, wish.record))
    , m_format(spectrumSamples(record.GetDataFormat()))
    , m_samples(QDir(store.recordFolder(record.GetRecordID()))
                    .filePath(ZELKO_XML::sampleFileName(record.GetRecordID(), record.GetDataFormat())),
                SampleValues(m_format.value_or(SpectrumSamples::IQ16), m_timeline.bytesPerFrame()))
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
    if (!m_format) {
        return ServiceStatus::NotSupported;
    }
    const auto kind = *m_format == SpectrumSamples::Real16 ? Spectrum::Kind::Real : Spectrum::Kind::Complex;
    m_spectrum = std::make_unique<Spectrum>(kind, *order, wish.window);
    if (!m_samples.open()) {
        return ServiceStatus::DamagedRecord;
    }
    return countLines(wish) ? ServiceStatus::None : ServiceStatus::NoSamples;
}

// False where there are fewer samples than a line is made of.
bool OverviewJob::countLines(const OverviewWish& wish)
{
    const bool isWhole = wish.stop == 0;
    const quint64 stop = isWhole ? m_timeline.stopOffset() : m_timeline.offsetAt(static_cast<quint64>(wish.stop));
    const quint64 end = std::min(stop, m_samples.size());
    m_begin = isWhole ? m_timeline.startOffset() : m_timeline.offsetAt(static_cast<quint64>(wish.start));
    m_frames = end > m_begin ? (end - m_begin) / m_timeline.bytesPerFrame() : 0;
    const quint64 fitting = m_frames / m_spectrum->length();
    const quint64 wanted = wish.lineCount == 0 ? fitting : static_cast<quint64>(wish.lineCount);
    m_lineCount = static_cast<quint32>(std::min(wanted, static_cast<quint64>(mostLines)));
    return fitting > 0;
}

bool OverviewJob::run(const Send& send, const std::stop_token& stop)
{
    for (quint32 line = 0; line < m_lineCount; ++line) {
        if (!makeLine(line, stop) || !sendLine(line, send)) {
            return false;
        }
    }
    return true;
}

// There is always a spectrum with its middle in the line: none begins further behind the one before than a line is
// long.
bool OverviewJob::makeLine(quint32 line, const std::stop_token& stop)
{
    m_spectrum->clear();
    if (linesOverlap()) {
        return takeSpectrum(frameOf(line), stop);
    }
    const quint64 end = frameOf(line + 1);
    while (m_next <= lastSpectrum() && m_next + m_spectrum->length() / 2 < end) {
        if (!takeSpectrum(m_next, stop)) {
            return false;
        }
        m_next = m_next == lastSpectrum() ? m_frames : std::min(m_next + m_spectrum->step(), lastSpectrum());
    }
    return true;
}

bool OverviewJob::takeSpectrum(quint64 frame, const std::stop_token& stop)
{
    const auto* const values = m_samples.values(offsetOf(frame), m_spectrum->length(), stop);
    if (values == nullptr) {
        return false;
    }
    m_spectrum->add(values);
    return true;
}

bool OverviewJob::sendLine(quint32 number, const Send& send)
{
    const ZELKO_XML::IndexEntry entry = m_timeline.entryAt(offsetOf(frameOf(number)));
    OverviewLine line;
    line.cookie = m_cookie;
    line.line = number;
    line.lineCount = m_lineCount;
    line.time = entry.GetTimestamp();
    line.span = *m_format == SpectrumSamples::Real16 ? entry.GetSampleRate() / 2 : entry.GetSampleRate();
    line.centreFrequency = entry.GetTunerFrequency();
    for (const QByteArray& datagram : line.datagrams(m_spectrum->levels())) {
        if (!send(datagram)) {
            return false;
        }
    }
    return true;
}

// Whether there are more lines than spectra fit one behind the other.
bool OverviewJob::linesOverlap() const
{
    return m_frames / m_spectrum->length() < m_lineCount;
}

// Where a line begins, and where all of them end for the number behind the last.
quint64 OverviewJob::frameOf(quint32 line) const
{
    return linesOverlap() ? beginOfShare(lastSpectrum(), line, m_lineCount - 1)
                          : beginOfShare(m_frames, line, m_lineCount);
}

} // namespace ZelkoRecorder
