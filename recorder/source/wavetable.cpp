#include <recorder/source/wavetable.h>

#include <array>
#include <cmath>
#include <numbers>

namespace ZelkoRecorder {

namespace {

constexpr int indexBits = 12;
constexpr std::size_t tableSize = std::size_t{1} << indexBits;
constexpr int fractionBits = 64 - indexBits;
constexpr Phase quarterTurn = Phase{1} << 62;

using Table = std::array<float, tableSize + 1>;

Table makeTable()
{
    Table table{};
    for (std::size_t index = 0; index < table.size(); ++index) {
        const double turns = static_cast<double>(index) / static_cast<double>(tableSize);
        table[index] = static_cast<float>(std::sin(2 * std::numbers::pi * turns));
    }
    return table;
}

} // namespace

Phase phaseStep(double frequency, double sampleRate)
{
    // Scaled to a quarter of the range, so that a whole turn still fits the signed type it passes through.
    const auto quarters = static_cast<qint64>(std::llround(std::ldexp(frequency / sampleRate, 62)));
    return static_cast<Phase>(quarters) * 4;
}

float sineOf(Phase phase)
{
    static const Table table = makeTable();
    const std::size_t index = phase >> fractionBits;
    const Phase below = phase & ((Phase{1} << fractionBits) - 1);
    const float fraction = static_cast<float>(below >> (fractionBits - 24)) * 0x1p-24F;
    return table[index] + (table[index + 1] - table[index]) * fraction;
}

float cosineOf(Phase phase)
{
    return sineOf(phase + quarterTurn);
}

} // namespace ZelkoRecorder
