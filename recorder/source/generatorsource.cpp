#include <recorder/source/generatorsource.h>

#include <recorder/source/cleantext.h>

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ZelkoRecorder {

namespace {

using Kind = GeneratorParameters::Kind;

constexpr float fullScale = 32767;
constexpr qint64 mostMarks = 1'000;

float amplitudeOf(double level)
{
    return fullScale * static_cast<float>(std::pow(10.0, level / 20));
}

float toneAmplitude(const GeneratorParameters& parameters)
{
    return parameters.kind == Kind::Noise ? 0 : amplitudeOf(parameters.level);
}

/// Amplitude of I and of Q alone: each carries half of the power.
float noiseAmplitude(const GeneratorParameters& parameters)
{
    const std::optional<double> level = parameters.kind == Kind::Noise ? parameters.level : parameters.noiseLevel;
    return level ? amplitudeOf(*level) / std::numbers::sqrt2_v<float> : 0;
}

QVector<SourceMark> burstMarks(const GeneratorParameters& parameters, qint64 totalFrames)
{
    QVector<SourceMark> marks;
    const qint64 period = parameters.framesIn(parameters.periodMilliseconds);
    const qint64 burst = parameters.framesIn(parameters.burstMilliseconds);
    for (qint64 frame = 0; frame < totalFrames && marks.size() < mostMarks; frame += period) {
        const qint64 length = std::min(burst, totalFrames - frame);
        marks.append({frame, length, QStringLiteral("Burst %1").arg(marks.size() + 1)});
    }
    return marks;
}

SourceDescription describe(const GeneratorParameters& parameters)
{
    SourceDescription description;
    description.name = cleanText(parameters.displayName());
    description.sampleRate = parameters.sampleRate;
    description.bandwidth = parameters.bandwidth.value_or(parameters.sampleRate);
    description.segments = {{0, parameters.centreFrequency, parameters.startTime}};
    if (parameters.seconds) {
        description.totalFrames = parameters.framesIn(*parameters.seconds * 1'000);
    }
    if (parameters.kind == Kind::Bursts) {
        description.marks = burstMarks(parameters, description.totalFrames);
    }
    return description;
}

qint16 clipped(float value)
{
    return static_cast<qint16>(std::lround(std::clamp(value, -fullScale, fullScale)));
}

} // namespace

GeneratorSource::GeneratorSource(const GeneratorParameters& parameters)
    : SignalSource(describe(parameters))
    , m_parameters(parameters)
    , m_toneAmplitude(toneAmplitude(parameters))
    , m_noiseAmplitude(noiseAmplitude(parameters))
    , m_burstFrames(parameters.framesIn(parameters.burstMilliseconds))
    , m_periodFrames(parameters.framesIn(parameters.periodMilliseconds))
    , m_offsetStep(phaseStep(parameters.offset, static_cast<double>(parameters.sampleRate)))
    , m_modulationStep(phaseStep(parameters.modulation, static_cast<double>(parameters.sampleRate)))
    , m_deviationStep(std::ldexp(parameters.deviation / static_cast<double>(parameters.sampleRate), 62))
    , m_noise(parameters.seed)
{}

qint64 GeneratorSource::read(char* buffer, qint64 frames)
{
    const qint64 total = description().totalFrames;
    const qint64 count = std::max(qint64{0}, total < 0 ? frames : std::min(frames, total - m_frame));
    const int bytesPerFrame = description().format.bytesPerFrame();
    for (qint64 index = 0; index < count; ++index) {
        writeFrame(buffer + index * bytesPerFrame);
        advance();
    }
    return count;
}

bool GeneratorSource::isToneOn() const
{
    return m_parameters.kind != Kind::Bursts || m_frame % m_periodFrames < m_burstFrames;
}

void GeneratorSource::writeFrame(char* buffer)
{
    float inPhase = 0;
    float quadrature = 0;
    if (isToneOn()) {
        inPhase = m_toneAmplitude * cosineOf(m_phase);
        quadrature = m_toneAmplitude * sineOf(m_phase);
    }
    if (m_noiseAmplitude > 0) {
        inPhase += m_noiseAmplitude * m_noise.next();
        quadrature += m_noiseAmplitude * m_noise.next();
    }
    qToLittleEndian(clipped(inPhase), buffer);
    qToLittleEndian(clipped(quadrature), buffer + sizeof(qint16));
}

void GeneratorSource::advance()
{
    m_phase += m_offsetStep;
    if (m_parameters.kind == Kind::Fm) {
        const double swing = m_deviationStep * static_cast<double>(cosineOf(m_modulationPhase));
        m_phase += static_cast<Phase>(static_cast<qint64>(swing)) * 4;
        m_modulationPhase += m_modulationStep;
    }
    ++m_frame;
}

} // namespace ZelkoRecorder
