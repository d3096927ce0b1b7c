#include <recorder/service/samplevalues.h>

#include <QtEndian>

#include <cmath>
#include <limits>

namespace ZelkoRecorder {

using DataFormat = ZELKO_XML::ZELKO_RecordData::DataFormat;

namespace {

float scaled(qint16 number)
{
    return static_cast<float>(number) * (1.0F / 32768);
}

float scaled(qint8 number)
{
    return static_cast<float>(number) * (1.0F / 128);
}

float scaled(float number)
{
    return std::abs(number) <= std::numeric_limits<float>::max() ? number : 0;
}

template <typename Number>
struct ComplexSample
{
    static constexpr std::size_t bytes = 2 * sizeof(Number);

    static std::complex<float> read(const char* frame)
    {
        return {scaled(qFromLittleEndian<Number>(frame)), scaled(qFromLittleEndian<Number>(frame + sizeof(Number)))};
    }
};

template <typename Number>
struct RealSample
{
    static constexpr std::size_t bytes = sizeof(Number);

    static std::complex<float> read(const char* frame) { return {scaled(qFromLittleEndian<Number>(frame)), 0}; }
};

template <typename Sample>
void readApart(const char* frames, std::size_t distance, std::size_t count, std::complex<float>* values)
{
    for (std::size_t i = 0; i < count; ++i) {
        values[i] = Sample::read(frames + i * distance);
    }
}

// A distance that the compiler knows lets it take several samples at once.
template <typename Sample>
void readFrames(const char* frames, std::size_t distance, std::size_t count, std::complex<float>* values)
{
    if (distance == Sample::bytes) {
        readApart<Sample>(frames, Sample::bytes, count, values);
    } else {
        readApart<Sample>(frames, distance, count, values);
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

SampleValues::SampleValues(SpectrumSamples samples, std::size_t bytesPerFrame)
    : m_samples(samples)
    , m_bytesPerFrame(bytesPerFrame)
{}

void SampleValues::read(const char* frames, std::size_t count, std::complex<float>* values) const
{
    switch (m_samples) {
    case SpectrumSamples::IQ16:
        return readFrames<ComplexSample<qint16>>(frames, m_bytesPerFrame, count, values);
    case SpectrumSamples::IQ8:
        return readFrames<ComplexSample<qint8>>(frames, m_bytesPerFrame, count, values);
    case SpectrumSamples::Real16:
        return readFrames<RealSample<qint16>>(frames, m_bytesPerFrame, count, values);
    case SpectrumSamples::IQFloat:
        return readFrames<ComplexSample<float>>(frames, m_bytesPerFrame, count, values);
    }
}

} // namespace ZelkoRecorder
