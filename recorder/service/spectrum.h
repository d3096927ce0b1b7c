#pragma once

#include <zelkobase/data/zelko_recorddata.h>

#include <memory>
#include <optional>
#include <vector>

namespace ZelkoRecorder {

/// The window that samples are seen through. The numbers are those of the service.
enum class SpectrumWindow { Rectangular, Hann, Hamming, Blackman, FlatTop };

/// How the samples of a record are read as numbers.
enum class SpectrumSamples { IQ16, IQ8, Real16, IQFloat };

/// How samples of this format are read; nothing for a format that has no spectrum.
std::optional<SpectrumSamples> spectrumSamples(ZELKO_XML::ZELKO_RecordData::DataFormat format);

/// Which power of two a length in samples is; nothing for a length that no spectrum has.
std::optional<int> spectrumOrder(int length);

/// Turns stretches of samples into spectra. For one thread.
class Spectrum
{
public:
    /// @name Powers of two that a length may be; see `spectrumOrder`
    /// @{
    static constexpr int lowestOrder = 4;
    static constexpr int highestOrder = 16;
    /// @}

    /// Lower than that is not told apart from it, in dB.
    static constexpr float lowestLevel = -200;

    /// Of 2 ^ `order` samples, which stand `bytesPerFrame` apart, the first channel in front. `order` within the
    /// bounds.
    Spectrum(SpectrumSamples samples, int order, SpectrumWindow window, std::size_t bytesPerFrame);
    ~Spectrum();

    /// Bytes of samples that a spectrum takes.
    std::size_t bytes() const;

    /// How many levels a spectrum has: as many as samples, or half of that for real ones.
    std::size_t bins() const;

    /// The spectrum of `bytes()` bytes, from the lowest frequency to the highest, in dB of the strongest tone that the
    /// format can hold; valid until the next call.
    const std::vector<float>& levels(const char* frames);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoRecorder
