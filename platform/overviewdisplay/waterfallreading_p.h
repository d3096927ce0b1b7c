#pragma once

#include <overviewdisplay/waterfallview.h>

#include <QStringList>

namespace SPECTRUM_OVERVIEW {

/// A cursor in words.
struct WaterfallReading
{
    WaterfallCursor cursor;
    double low = 0; ///< of the frequencies that are shown, in hertz
    double high = 0;
    double distance = 0; ///< between frequencies that can be told apart

    /// With date and zone.
    QString text() const;

    /// Beside the dates of the axis; shorter ones for where there is less room. `hasDate`: the axis has more than one
    /// day.
    QStringList shortTexts(bool hasDate) const;

private:
    QStringList levelAndFrequency() const;
};

} // namespace SPECTRUM_OVERVIEW
