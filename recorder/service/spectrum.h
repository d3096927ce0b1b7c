#pragma once

#include <complex>
#include <memory>
#include <optional>
#include <vector>

namespace ZelkoRecorder {

/// The window that samples are seen through. The numbers are those of the service.
enum class SpectrumWindow { Rectangular, Hann, Hamming, Blackman, FlatTop };

/// Which power of two a length in samples is; nothing for a length that no spectrum has.
std::optional<int> spectrumOrder(int length);

/// Turns stretches of samples into spectra, and keeps the strongest level that they have in each bin. For one thread.
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

    enum class Kind { Complex, Real };

    /// Of 2 ^ `order` samples; `order` within the bounds.
    Spectrum(Kind kind, int order, SpectrumWindow window);
    ~Spectrum();

    /// How many samples a spectrum takes.
    std::size_t length() const;

    /// How far behind one spectrum the next begins, so that all samples between are seen: windows that fade at their
    /// ends overlap.
    std::size_t step() const;

    /// How many levels a spectrum has: as many as samples, or half of that for real ones.
    std::size_t bins() const;

    /// Begins anew, with nothing heard at all.
    void clear();

    /// Takes the spectrum of `length()` samples, of which 1 is the greatest.
    void add(const std::complex<float>* samples);

    /// The strongest levels since it was begun, from the lowest frequency to the highest, in dB of the strongest tone
    /// that there can be; valid until the next call.
    const std::vector<float>& levels();

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoRecorder
