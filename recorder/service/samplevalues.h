#pragma once

#include <zelkobase/data/zelko_recorddata.h>

#include <complex>
#include <cstddef>
#include <optional>

namespace ZelkoRecorder {

/// How the samples of a record are read as numbers.
enum class SpectrumSamples { IQ16, IQ8, Real16, IQFloat };

/// How samples of this format are read; nothing for a format that has no spectrum.
std::optional<SpectrumSamples> spectrumSamples(ZELKO_XML::ZELKO_RecordData::DataFormat format);

/// Reads samples as numbers, of which the format's greatest is 1. Any thread.
class SampleValues
{
public:
    /// Samples that stand `bytesPerFrame` apart, the first channel in front.
    SampleValues(SpectrumSamples samples, std::size_t bytesPerFrame);

    std::size_t bytesPerFrame() const { return m_bytesPerFrame; }

    /// The first channel of `count` frames. What is no number, or infinite, is 0; real samples have no imaginary part.
    void read(const char* frames, std::size_t count, std::complex<float>* values) const;

private:
    SpectrumSamples m_samples;
    std::size_t m_bytesPerFrame;
};

} // namespace ZelkoRecorder
