#include <recorder/service/samplevalues.h>

#include <QtEndian>

#include <cmath>
#include <limits>

namespace ZelkoRecorder {

using DataFormat = ZELKO_XML::ZELKO_RecordData::DataFormat;

namespace {

float finite(float number)
{
    return std::abs(number) <= std::numeric_limits<float>::max() ? number : 0;
}

float finite(int number)
{
    return static_cast<float>(number);
}

// So plain that the compiler takes several numbers at once.
template <typename Number>
void readNumbers(const char* bytes, const std::vector<float>& weights, float* numbers)
{
    const float* const weight = weights.data();
    for (std::size_t i = 0; i < weights.size(); ++i) {
        numbers[i] = weight[i] * finite(qFromLittleEndian<Number>(bytes + sizeof(Number) * i));
    }
}

} // namespace

std::optional<SpectrumSamples> spectrumSamples(DataFormat format)
{
    switch (format) {
    case DataFormat::IQ16:
        return SpectrumSamples::IQ16;
    case DataFormat::IQ8:
        return SpectrumSamples::IQ8;
    case DataFormat::Real16:
    case DataFormat::Audio16:
        return SpectrumSamples::Real16;
    case DataFormat::IQ32: // of 32 bits each, and with a floating point: what the recorder writes, and takes
    case DataFormat::IQFloat:
        return SpectrumSamples::IQFloat;
    default:
        return std::nullopt;
    }
}

std::size_t bytesOf(SpectrumSamples samples)
{
    switch (samples) {
    case SpectrumSamples::IQ16:
        return 4;
    case SpectrumSamples::IQ8:
    case SpectrumSamples::Real16:
        return 2;
    case SpectrumSamples::IQFloat:
        break;
    }
    return 8;
}

std::size_t numbersOf(SpectrumSamples samples)
{
    return samples == SpectrumSamples::Real16 ? 1 : 2;
}

float fullScale(SpectrumSamples samples)
{
    switch (samples) {
    case SpectrumSamples::IQ16:
    case SpectrumSamples::Real16:
        return 32768;
    case SpectrumSamples::IQ8:
        return 128;
    case SpectrumSamples::IQFloat:
        break;
    }
    return 1;
}

void readWeighted(SpectrumSamples samples, const char* bytes, const std::vector<float>& weights, float* numbers)
{
    switch (samples) {
    case SpectrumSamples::IQ16:
    case SpectrumSamples::Real16:
        return readNumbers<qint16>(bytes, weights, numbers);
    case SpectrumSamples::IQ8:
        return readNumbers<qint8>(bytes, weights, numbers);
    case SpectrumSamples::IQFloat:
        return readNumbers<float>(bytes, weights, numbers);
    }
}

} // namespace ZelkoRecorder
