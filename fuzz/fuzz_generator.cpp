// Texts as the parameters of a generator: what is accepted keeps the promises of the parameters and makes a source
// whose signal does not depend on how it is read; the rest is refused with a text.
#include "require.h"

#include <recorder/source/generatorsource.h>
#include <recorder/source/sourcefactory.h>

#include <cmath>
#include <cstdint>

using namespace ZelkoRecorder;

namespace {

using Kind = GeneratorParameters::Kind;

constexpr qint64 framesToRead = 64;

bool isWithin(double value, double minimum, double maximum)
{
    return value >= minimum && value <= maximum;
}

void checkParameters(const GeneratorParameters& parameters)
{
    const auto rate = static_cast<double>(parameters.sampleRate);
    require(isWithin(rate, 1e3, 1e7));
    require(isWithin(parameters.seconds.value_or(1), 1e-3, 86'400));
    require(parameters.centreFrequency <= 1'000'000'000'000);
    require(isWithin(static_cast<double>(parameters.bandwidth.value_or(1)), 1, rate));
    require(isWithin(parameters.level, -120, 0) && isWithin(parameters.noiseLevel.value_or(0), -140, 0));
    require(parameters.kind == Kind::Noise || std::abs(parameters.offset) <= rate / 2);
    require(parameters.kind != Kind::Fm ||
            (isWithin(parameters.deviation, 0, rate / 2) && isWithin(parameters.modulation, 0, rate / 2)));
    require(isWithin(parameters.burstMilliseconds, 0.01, 3.6e6) &&
            isWithin(parameters.periodMilliseconds, 0.01, 3.6e6));
    require(parameters.kind != Kind::Bursts || parameters.burstMilliseconds <= parameters.periodMilliseconds);
    require(!parameters.displayName().isEmpty());
}

QByteArray read(SignalSource& source, qint64 framesPerRead)
{
    const int bytesPerFrame = source.description().format.bytesPerFrame();
    QByteArray samples(framesToRead * bytesPerFrame, Qt::Uninitialized);
    qint64 frames = 0;
    while (frames < framesToRead) {
        const qint64 wanted = std::min(framesPerRead, framesToRead - frames);
        const qint64 got = source.read(samples.data() + frames * bytesPerFrame, wanted);
        require(got >= 0 && got <= wanted && source.errorText().isEmpty());
        frames += got;
        if (got < wanted) {
            break;
        }
    }
    const qint64 total = source.description().totalFrames;
    require(frames == (total < 0 ? framesToRead : std::min(total, framesToRead)));
    return samples.first(frames * bytesPerFrame);
}

void checkDescription(const SourceDescription& description)
{
    require(description.sampleRate >= 1 && description.bandwidth >= 1 &&
            description.bandwidth <= description.sampleRate);
    require(description.totalFrames == -1 || description.totalFrames >= 1);
    qint64 free = 0; // first frame behind the marks so far
    for (const SourceMark& mark : description.marks) {
        require(mark.frame >= free && mark.frameCount >= 1 && !mark.text.isEmpty());
        free = mark.frame + mark.frameCount;
    }
    require(free == 0 || free <= description.totalFrames);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QString error;
    const std::optional<GeneratorParameters> parameters = GeneratorParameters::parse(text, &error);
    require(parameters.has_value() == error.isEmpty());
    const auto named = SourceFactory::create(QStringLiteral("generator:") + text, nullptr);
    require((named != nullptr) == parameters.has_value());
    if (parameters) {
        checkParameters(*parameters);
        GeneratorSource source(*parameters);
        checkDescription(source.description());
        if (parameters->startTime != 0) {
            require(source.description().startTime() == parameters->startTime);
        }
        require(read(source, framesToRead) == read(*named, 7));
    }
    return 0;
}
