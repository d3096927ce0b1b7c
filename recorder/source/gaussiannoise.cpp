#include <recorder/source/gaussiannoise.h>

namespace ZelkoRecorder {

GaussianNoise::GaussianNoise(quint64 seed)
    : m_state(seed)
{}

float GaussianNoise::next()
{
    // SplitMix64: every seed is a good one, 0 too.
    m_state += 0x9E3779B97F4A7C15U;
    quint64 bits = m_state;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBU;
    bits ^= bits >> 31;

    // The sum of four uniform numbers of 16 bits, less its mean, over its standard deviation.
    const quint64 sum = (bits & 0xFFFF) + ((bits >> 16) & 0xFFFF) + ((bits >> 32) & 0xFFFF) + (bits >> 48);
    constexpr float mean = 4 * 65535 / 2.0F;
    constexpr float deviation = 37837.2F;
    return (static_cast<float>(sum) - mean) / deviation;
}

} // namespace ZelkoRecorder
