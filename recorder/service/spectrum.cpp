#include <recorder/service/spectrum.h>

#include <QtEndian>

#include <fftw3.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <mutex>
#include <numbers>

namespace ZelkoRecorder {

using DataFormat = ZELKO_XML::ZELKO_RecordData::DataFormat;

namespace {

// A window is a sum of cosines with these weights, whose signs alternate.
std::vector<double> weightsOf(SpectrumWindow window)
{
    switch (window) {
    case SpectrumWindow::Hann:
        return {0.5, 0.5};
    case SpectrumWindow::Hamming:
        return {0.54, 0.46};
    case SpectrumWindow::Blackman:
        return {0.42, 0.5, 0.08};
    case SpectrumWindow::FlatTop:
        return {0.21557895, 0.41663158, 0.277263158, 0.083578947, 0.006947368};
    case SpectrumWindow::Rectangular:
        break;
    }
    return {1};
}

// Scaled so that a tone at full scale has a level of 1.
std::vector<float> windowOf(SpectrumWindow window, std::size_t length)
{
    const std::vector<double> weights = weightsOf(window);
    std::vector<float> result(length);
    for (std::size_t i = 0; i < length; ++i) {
        double value = 0;
        for (std::size_t k = 0; k < weights.size(); ++k) {
            const double phase = 2 * std::numbers::pi * static_cast<double>(k * i) / static_cast<double>(length);
            value += (k % 2 == 0 ? 1 : -1) * weights[k] * std::cos(phase);
        }
        result[i] = static_cast<float>(value / (weights[0] * static_cast<double>(length)));
    }
    return result;
}

float number16(const char* bytes)
{
    return static_cast<float>(qFromLittleEndian<qint16>(bytes)) / 32768;
}

float number8(const char* bytes)
{
    return static_cast<float>(static_cast<signed char>(*bytes)) / 128;
}

float numberFloat(const char* bytes)
{
    const auto value = qFromLittleEndian<float>(bytes);
    return std::isfinite(value) ? value : 0;
}

struct Layout
{
    float (*number)(const char*);
    std::size_t quadrature; // offset of Q; 0 for real samples
};

Layout layoutOf(SpectrumSamples samples)
{
    switch (samples) {
    case SpectrumSamples::IQ16:
        return {number16, 2};
    case SpectrumSamples::IQ8:
        return {number8, 1};
    case SpectrumSamples::Real16:
        return {number16, 0};
    case SpectrumSamples::IQFloat:
        break;
    }
    return {numberFloat, 4};
}

float level(const fftwf_complex& bin)
{
    const float power = bin[0] * bin[0] + bin[1] * bin[1];
    return power > 0 ? std::max(10 * std::log10(power), Spectrum::lowestLevel) : Spectrum::lowestLevel;
}

std::mutex planMutex; // making plans is the one thing that two threads may not do at once

} // namespace

struct Spectrum::Private
{
    Private(SpectrumSamples samples, int order, SpectrumWindow shape, std::size_t frameBytes)
        : length(std::size_t{1} << order)
        , bytesPerFrame(frameBytes)
        , layout(layoutOf(samples))
        , window(windowOf(shape, length))
        , buffer(fftwf_alloc_complex(length))
        , result(layout.quadrature == 0 ? length / 2 : length)
    {
        const std::lock_guard lock(planMutex);
        plan = fftwf_plan_dft_1d(static_cast<int>(length), buffer, buffer, FFTW_FORWARD, FFTW_ESTIMATE);
    }
    ~Private()
    {
        const std::lock_guard lock(planMutex);
        fftwf_destroy_plan(plan);
        fftwf_free(buffer);
    }
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    void fill(const char* frames);

    const std::size_t length;
    const std::size_t bytesPerFrame;
    const Layout layout;
    const std::vector<float> window;
    fftwf_complex* const buffer;
    fftwf_plan plan;
    std::vector<float> result;
};

void Spectrum::Private::fill(const char* frames)
{
    for (std::size_t i = 0; i < length; ++i, frames += bytesPerFrame) {
        buffer[i][0] = window[i] * layout.number(frames);
        buffer[i][1] = layout.quadrature == 0 ? 0 : window[i] * layout.number(frames + layout.quadrature);
    }
}

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

std::optional<int> spectrumOrder(int length)
{
    if (length < 1 << Spectrum::lowestOrder || length > 1 << Spectrum::highestOrder ||
        !std::has_single_bit(static_cast<unsigned>(length))) {
        return std::nullopt;
    }
    return std::countr_zero(static_cast<unsigned>(length));
}

Spectrum::Spectrum(SpectrumSamples samples, int order, SpectrumWindow window, std::size_t bytesPerFrame)
    : d(std::make_unique<Private>(samples, order, window, bytesPerFrame))
{}

Spectrum::~Spectrum() = default;

std::size_t Spectrum::bytes() const
{
    return d->length * d->bytesPerFrame;
}

std::size_t Spectrum::bins() const
{
    return d->result.size();
}

// The upper half of what the transform gives are the frequencies below the centre. Of real samples it mirrors the lower
// half, and each tone is split between the two.
const std::vector<float>& Spectrum::levels(const char* frames)
{
    constexpr float ofBothHalves = 6.0206F;
    d->fill(frames);
    fftwf_execute(d->plan);
    const bool isReal = d->layout.quadrature == 0;
    const std::size_t half = d->length / 2;
    for (std::size_t i = 0; i < d->result.size(); ++i) {
        d->result[i] = isReal ? level(d->buffer[i]) + ofBothHalves : level(d->buffer[(i + half) % d->length]);
    }
    return d->result;
}

} // namespace ZelkoRecorder
