#pragma once

#include "sigmfpair.h"

#include <QtEndian>

#include <cmath>
#include <numbers>
#include <random>

namespace ZelkoTest {

/// A SigMF pair as a receiver would make it: noise, and in it one burst of a tone.
struct BurstCapture
{
    static constexpr int sampleRate = 200'000;
    static constexpr qsizetype frames = 200'000;
    static constexpr qsizetype burstBegin = 120'345;
    static constexpr qsizetype burstLength = 6'000;
    static constexpr double toneFrequency = -37'500; ///< Hz off the centre

    /// `stem` is the path of the pair without an ending.
    static bool write(const QString& stem)
    {
        SigmfPair pair;
        pair.global["core:sample_rate"] = sampleRate;
        pair.samples = samples();
        pair.addHash();
        return pair.write(stem);
    }

private:
    static QByteArray samples()
    {
        std::mt19937 random(7);
        std::normal_distribution<double> noise(0, 200);
        QByteArray bytes(4 * frames, '\0');
        for (qsizetype i = 0; i < frames; ++i) {
            const bool isOn = i >= burstBegin && i < burstBegin + burstLength;
            const double phase = 2 * std::numbers::pi * toneFrequency * static_cast<double>(i) / sampleRate;
            const double amplitude = isOn ? 12'000 : 0;
            const auto part = [&](double tone) { return static_cast<qint16>(amplitude * tone + noise(random)); };
            qToLittleEndian(part(std::cos(phase)), bytes.data() + 4 * i);
            qToLittleEndian(part(std::sin(phase)), bytes.data() + 4 * i + 2);
        }
        return bytes;
    }
};

} // namespace ZelkoTest
