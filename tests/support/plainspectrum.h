#pragma once

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace ZelkoTest {

using Values = std::vector<std::complex<double>>;

/// The transform of 2 ^ n values, written down as the books have it.
inline Values transformed(const Values& values)
{
    if (values.size() == 1) {
        return values;
    }
    const std::size_t half = values.size() / 2;
    Values even(half);
    Values odd(half);
    for (std::size_t i = 0; i < half; ++i) {
        even[i] = values[2 * i];
        odd[i] = values[2 * i + 1];
    }
    even = transformed(even);
    odd = transformed(odd);
    Values result(values.size());
    for (std::size_t i = 0; i < half; ++i) {
        const double phase = -std::numbers::pi * static_cast<double>(i) / static_cast<double>(half);
        const std::complex<double> turned = std::polar(1.0, phase) * odd[i];
        result[i] = even[i] + turned;
        result[i + half] = even[i] - turned;
    }
    return result;
}

/// The levels of 2 ^ n values through a Hann window, in dB of a tone that reaches 1: lowest frequency first, that of
/// the centre in the middle.
inline std::vector<double> hannLevels(Values values)
{
    const std::size_t count = values.size();
    for (std::size_t i = 0; i < count; ++i) {
        const double turn = static_cast<double>(i) / static_cast<double>(count);
        values[i] *= (1 - std::cos(2 * std::numbers::pi * turn)) / static_cast<double>(count);
    }
    const Values bins = transformed(values);
    std::vector<double> levels(count);
    for (std::size_t i = 0; i < count; ++i) {
        levels[i] = 10 * std::log10(std::norm(bins[(i + count / 2) % count]) + 1e-20);
    }
    return levels;
}

} // namespace ZelkoTest
