#pragma once

#include <zelkobase/data/zelko_recorddata.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace ZelkoRecorder {

/// How the samples of a record are read as numbers.
enum class SpectrumSamples { IQ16, IQ8, Real16, IQFloat };

/// How samples of this format are read; nothing for a format that has no spectrum.
std::optional<SpectrumSamples> spectrumSamples(ZELKO_XML::ZELKO_RecordData::DataFormat format);

/// Bytes of one sample of one channel.
std::size_t bytesOf(SpectrumSamples samples);

/// How many numbers a sample is: 2, I and Q, or 1.
std::size_t numbersOf(SpectrumSamples samples);

/// The greatest number of the format.
float fullScale(SpectrumSamples samples);

/// Reads as many numbers of samples that stand one behind the other as there are weights, and multiplies each with its
/// weight. What is no number, or infinite, is 0. Any thread.
void readWeighted(SpectrumSamples samples, const char* bytes, const std::vector<float>& weights, float* numbers);

} // namespace ZelkoRecorder
