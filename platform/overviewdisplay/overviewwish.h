#pragma once

#include <zelkobase/data/zelkodatatypes.h>

#include <QtGlobal>

namespace SPECTRUM_OVERVIEW {

/// What is asked of a recorder: spectra of a record, spread evenly over the samples of a time.
struct OverviewWish
{
    quint64 start = 0; ///< microseconds since the epoch
    quint64 stop = 0;  ///< behind the last sample; a wish that does not end after its start has no answer
    quint32 lineCount = 0;
    quint32 fftLength = 0; ///< samples of a spectrum, a power of two
    ZelkoDataTypes::eFFT_Window window = ZelkoDataTypes::eFFT_Window::Hann;

    /// Whether an answer can have so many lines of so many bins: there are half as many for real samples.
    bool canHave(quint32 lines, quint32 bins) const
    {
        return lines <= lineCount && (bins == fftLength || bins == fftLength / 2);
    }

    bool operator==(const OverviewWish&) const = default;
};

} // namespace SPECTRUM_OVERVIEW
