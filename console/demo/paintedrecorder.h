#pragma once

#include <overviewdisplay/overviewwish.h>

#include <QString>
#include <QUdpSocket>

#include <memory>

namespace SPECTRUM_OVERVIEW {
class SpectrumOverviewWidget;
}

namespace ZELKO_XML {
class ZELKO_RecordData;
}

namespace ZelkoConsole {

/// Plays the recorder of an overview at this host, for pictures: sends what PaintedSpectra has of any record.
class PaintedRecorder
{
public:
    static QString device() { return QStringLiteral("Recorder1"); }
    static QString address() { return QStringLiteral("127.0.0.1"); }

    /// Ten minutes, with a sample rate that goes with the frequencies of the spectra.
    static std::shared_ptr<ZELKO_XML::ZELKO_RecordData> makeRecord(const QString& id, const QString& name);

    /// Answers what the window asks for with this share of the lines; with none, not at all.
    PaintedRecorder(const SPECTRUM_OVERVIEW::SpectrumOverviewWidget& window, double share);

private:
    void answer(const QString& recordID, const SPECTRUM_OVERVIEW::OverviewWish& wish, quint16 port);

    const double m_share;
    QUdpSocket m_socket; ///< the last to come and the first to go, as what is connected ends with it
};

} // namespace ZelkoConsole
