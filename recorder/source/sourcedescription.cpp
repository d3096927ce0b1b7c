#include <recorder/source/sourcedescription.h>

namespace ZelkoRecorder {

quint64 SourceDescription::microsecondsAt(qint64 frame) const
{
    constexpr quint64 perSecond = 1'000'000;
    const auto frames = static_cast<quint64>(frame);
    // Whole seconds apart from the rest: frame times a million alone would not fit.
    return frames / sampleRate * perSecond + frames % sampleRate * perSecond / sampleRate;
}

} // namespace ZelkoRecorder
