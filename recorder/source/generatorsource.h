#pragma once

#include <recorder/source/gaussiannoise.h>
#include <recorder/source/generatorparameters.h>
#include <recorder/source/signalsource.h>
#include <recorder/source/wavetable.h>

namespace ZelkoRecorder {

/// A made signal: complex samples of 16 bits, one channel. The same parameters give the same bytes, on every machine
/// whose arithmetic is IEEE 754, and however they are divided into reads. Never fails.
///
/// Full scale is an amplitude of 32767: a carrier of 0 dBFS reaches it, noise of 0 dBFS has its power. What goes beyond
/// is clipped. Finite bursts come with a mark each, the first 1000 of them.
class GeneratorSource final : public SignalSource
{
public:
    /// `parameters` are within the ranges that `GeneratorParameters::parse` holds.
    explicit GeneratorSource(const GeneratorParameters& parameters);

    qint64 read(char* buffer, qint64 frames) override;

private:
    bool isToneOn() const;
    void advance();
    void writeFrame(char* buffer);

    const GeneratorParameters m_parameters;
    const float m_toneAmplitude;
    const float m_noiseAmplitude;
    const qint64 m_burstFrames;
    const qint64 m_periodFrames;
    const Phase m_offsetStep;
    const Phase m_modulationStep;
    const double m_deviationStep;
    GaussianNoise m_noise;
    Phase m_phase = 0;
    Phase m_modulationPhase = 0;
    qint64 m_frame = 0;
};

} // namespace ZelkoRecorder
