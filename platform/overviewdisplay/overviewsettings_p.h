#pragma once

#include <zelkobase/data/zelkodatatypes.h>

#include <QByteArray>
#include <QList>
#include <QString>

namespace SPECTRUM_OVERVIEW {

/// What a user has chosen for his overviews, which outlives the window. GUI thread.
struct OverviewSettings
{
    static constexpr quint32 ShortestFft = 64;
    static constexpr quint32 LongestFft = 65'536;
    static constexpr int LowestLevel = -200; ///< dB of full scale
    static constexpr int HighestLevel = 100;

    quint32 fftLength = 1024;
    ZelkoDataTypes::eFFT_Window window = ZelkoDataTypes::eFFT_Window::Hann;
    int lineCount = 0; ///< 0: as many as there is room for
    bool hasAutomaticLevels = true;
    int lowestLevel = -120; ///< below the highest
    int highestLevel = 0;
    QString pictureFolder; ///< of the last picture that was saved
    QByteArray geometry;   ///< of the window, as QWidget::saveGeometry() gives it; empty: none

    bool operator==(const OverviewSettings&) const = default;

    /// The values that can be chosen.
    static QList<quint32> fftLengths();
    static QList<ZelkoDataTypes::eFFT_Window> windows();
    static QList<int> lineCounts();

    /// The settings under this path of the user's configuration. What is missing there, or is none that can be chosen,
    /// is as above.
    static OverviewSettings read(const QString& cfgPath);

    /// Keeps them under that path. False if that fails.
    bool write(const QString& cfgPath) const;
};

} // namespace SPECTRUM_OVERVIEW
