#pragma once

#include <QString>

#include <optional>

namespace ZelkoRecorder {

/// What a generator makes. The members' initial values are what a text that does not name their key gets.
///
/// As text: the kind, then `key=value` pairs, all parted by commas: "fm,rate=48000,seconds=5,frequency=145000000".
/// The kinds, the keys and their ranges stand in docs/sources.md.
struct GeneratorParameters
{
    enum class Kind {
        Carrier,
        Fm,
        Bursts,
        Noise,
    };

    Kind kind = Kind::Carrier;
    quint64 sampleRate = 48'000;
    std::optional<double> seconds;
    quint64 centreFrequency = 145'000'000;
    std::optional<quint64> bandwidth;
    /// Microseconds since the epoch; 0 for the moment of reading.
    quint64 startTime = 0;
    /// Empty for the kind's own name.
    QString name;
    quint64 seed = 1;
    double level = -12;
    double offset = 0;
    std::optional<double> noiseLevel;
    double deviation = 3'000;
    double modulation = 1'000;
    double burstMilliseconds = 100;
    double periodMilliseconds = 1'000;

    /// Reads such a text. Nothing, and in `error` a sentence that names the key, for an unknown kind or key, a key of
    /// another kind, a key given twice, or a value outside its range. `error` may be null.
    static std::optional<GeneratorParameters> parse(const QString& text, QString* error);

    /// Frames in `milliseconds` at this rate, at least 1.
    qint64 framesIn(double milliseconds) const;

    /// `name`, or the kind's own.
    QString displayName() const;
};

} // namespace ZelkoRecorder
