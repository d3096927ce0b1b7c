#include <recorder/service/spectrum.h>

#include <fftw3.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <mutex>
#include <numbers>

namespace ZelkoRecorder {

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

// A weight for each number of the samples, which brings the greatest number to 1.
std::vector<float> weightsFor(SpectrumSamples samples, const std::vector<float>& window)
{
    std::vector<float> result;
    for (const float weight : window) {
        result.insert(result.end(), numbersOf(samples), weight / fullScale(samples));
    }
    return result;
}

// What stands at the edges of a window that fades is hardly seen, so the next one begins before this one ends: the
// sooner the less a window sees but its middle.
std::size_t stepOf(SpectrumWindow window, std::size_t length)
{
    switch (window) {
    case SpectrumWindow::Hann:
    case SpectrumWindow::Hamming:
        return length - length / 4;
    case SpectrumWindow::Blackman:
    case SpectrumWindow::FlatTop:
        return length / 2;
    case SpectrumWindow::Rectangular:
        break;
    }
    return length;
}

float level(float power)
{
    return power > 0 ? std::max(10 * std::log10(power), Spectrum::lowestLevel) : Spectrum::lowestLevel;
}

std::mutex planMutex; // making plans is the one thing that two threads may not do at once

} // namespace

struct Spectrum::Private
{
    Private(SpectrumSamples format, int order, SpectrumWindow shape)
        : samples(format)
        , isReal(numbersOf(format) == 1)
        , length(std::size_t{1} << order)
        , step(stepOf(shape, length))
        , weights(weightsFor(format, windowOf(shape, length)))
        , seen(fftwf_alloc_real(weights.size()))
        , transformed(fftwf_alloc_complex(length))
        , strongest(isReal ? length / 2 : length)
        , result(strongest.size())
        , plan(makePlan())
    {}
    ~Private()
    {
        const std::lock_guard lock(planMutex);
        fftwf_destroy_plan(plan);
        fftwf_free(transformed);
        fftwf_free(seen);
    }
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    fftwf_plan makePlan() const;
    void keepStrongest();

    const SpectrumSamples samples;
    const bool isReal;
    const std::size_t length;
    const std::size_t step;
    const std::vector<float> weights;
    float* const seen; // through the window
    fftwf_complex* const transformed;
    std::vector<float> strongest; // power of each bin, in the order of the transform
    std::vector<float> result;
    fftwf_plan_s* const plan;
};

// Pairs of numbers are complex ones in memory.
fftwf_plan Spectrum::Private::makePlan() const
{
    const std::lock_guard lock(planMutex);
    const int count = static_cast<int>(length);
    return isReal ? fftwf_plan_dft_r2c_1d(count, seen, transformed, FFTW_ESTIMATE)
                  : fftwf_plan_dft_1d(count, reinterpret_cast<fftwf_complex*>(seen), transformed, FFTW_FORWARD,
                                      FFTW_ESTIMATE);
}

// A power that is no number stays out.
void Spectrum::Private::keepStrongest()
{
    float* const kept = strongest.data();
    for (std::size_t i = 0; i < strongest.size(); ++i) {
        const float power = transformed[i][0] * transformed[i][0] + transformed[i][1] * transformed[i][1];
        kept[i] = power > kept[i] ? power : kept[i];
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

Spectrum::Spectrum(SpectrumSamples samples, int order, SpectrumWindow window)
    : d(std::make_unique<Private>(samples, order, window))
{}

Spectrum::~Spectrum() = default;

std::size_t Spectrum::length() const
{
    return d->length;
}

std::size_t Spectrum::step() const
{
    return d->step;
}

std::size_t Spectrum::bins() const
{
    return d->strongest.size();
}

void Spectrum::clear()
{
    std::fill(d->strongest.begin(), d->strongest.end(), 0.0F);
}

void Spectrum::add(const char* samples)
{
    readWeighted(d->samples, samples, d->weights, d->seen);
    fftwf_execute(d->plan);
    d->keepStrongest();
}

// The upper half of what the transform gives are the frequencies below the centre. Of real samples it mirrors the lower
// half, and each tone is split between the two.
const std::vector<float>& Spectrum::levels()
{
    constexpr float ofBothHalves = 6.0206F;
    const std::size_t half = d->length / 2;
    for (std::size_t i = 0; i < d->result.size(); ++i) {
        d->result[i] = d->isReal ? level(d->strongest[i]) + ofBothHalves : level(d->strongest[(i + half) % d->length]);
    }
    return d->result;
}

} // namespace ZelkoRecorder
