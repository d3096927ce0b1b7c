#include <console/demo/paintedrecorder.h>

#include <console/demo/paintedspectra.h>

#include <overviewdisplay/spectrumoverviewwidget.h>
#include <zelkobase/data/zelko_recorddata.h>
#include <zelkobase/service/overviewline.h>

#include <algorithm>
#include <cmath>

namespace ZelkoConsole {
namespace {

using SPECTRUM_OVERVIEW::OverviewLevels;
using SPECTRUM_OVERVIEW::OverviewWish;
using SPECTRUM_OVERVIEW::SpectrumOverviewWidget;
using Record = ZELKO_XML::ZELKO_RecordData;

constexpr quint64 centre = 118'700'000;
constexpr quint64 rate = 2'400'000;
constexpr quint64 seconds = 600;
constexpr quint64 end = PaintedSpectra::begin + seconds * PaintedSpectra::second;

ZELKO_XML::IndexEntry entry(quint64 time, quint64 offset)
{
    ZELKO_XML::IndexEntry entry;
    entry.SetTimestamp(time);
    entry.SetRecordOffset(offset);
    entry.SetSampleRate(rate);
    return entry;
}

std::vector<float> decibels(const OverviewLevels& levels, int line)
{
    const qint16* const hundredths = levels.levels(line);
    std::vector<float> all(static_cast<std::size_t>(levels.binCount()));
    std::transform(hundredths, hundredths + all.size(), all.begin(), [](qint16 level) { return level / 100.0F; });
    return all;
}

} // namespace

std::shared_ptr<Record> PaintedRecorder::makeRecord(const QString& id, const QString& name)
{
    constexpr quint64 size = seconds * rate * 4;
    auto record = std::make_shared<Record>();
    record->SetRecordID(id);
    record->SetRecordName(name);
    record->SetStartTime(PaintedSpectra::begin);
    record->SetStopTime(end);
    record->SetStopPosition(size);
    record->SetSize(size);
    record->SetRecordStatus(Record::RecordStatus::Finished);
    record->SetIndexEntry({entry(PaintedSpectra::begin, 0), entry(end, size)});
    return record;
}

PaintedRecorder::PaintedRecorder(const SpectrumOverviewWidget& window, double share)
    : m_share(share)
{
    m_socket.bind(QHostAddress(address()));
    QObject::connect(&window, &SpectrumOverviewWidget::si_overviewSpectrumStreamed, &m_socket,
                     [this](const QString& recordID, qint64 start, qint64 stop, uint lines, ulong fftLength,
                            ZelkoDataTypes::eFFT_Window function, const QString&, uint port, const QString&) {
                         answer(recordID,
                                {static_cast<quint64>(start), static_cast<quint64>(stop), lines,
                                 static_cast<quint32>(fftLength), function},
                                static_cast<quint16>(port));
                     });
}

void PaintedRecorder::answer(const QString& recordID, const OverviewWish& wish, quint16 port)
{
    const auto answered = static_cast<int>(std::lround(m_share * wish.lineCount));
    PaintedSpectra spectra(wish);
    spectra.setCentre(centre, rate);
    spectra.take(0, answered - 1);
    const OverviewLevels& levels = spectra.levels();
    for (int line = 0; line < answered; ++line) {
        const ZelkoCommon::OverviewLine head{ZelkoCommon::overviewCookie(device(), recordID),
                                             static_cast<quint32>(line),
                                             wish.lineCount,
                                             levels.time(line),
                                             centre,
                                             rate};
        const QList<QByteArray> datagrams = head.datagrams(decibels(levels, line));
        for (const QByteArray& datagram : datagrams) {
            m_socket.writeDatagram(datagram, QHostAddress::LocalHost, port);
        }
    }
}

} // namespace ZelkoConsole
