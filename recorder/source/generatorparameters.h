#pragma once

#include <QString>

#include <optional>

namespace ZelkoRecorder {

/// What a generator makes. The members' initial values are what a text that does not name their key gets.
///
/// As text: the kind, then `key=value` pairs, all parted by commas: "fm,rate=48000,seconds=5,frequency=145000000".
///
/// | key        | kinds                | unit and range              |
/// |------------|----------------------|-----------------------------|
/// | rate       | all                  | Hz, whole, 1000 to 10000000 |
/// | seconds    | all                  | s, 0.001 to 86400; endless without |
/// | frequency  | all                  | Hz, whole, 0 to 1e12        |
/// | bandwidth  | all                  | Hz, whole, 1 to the rate; the rate without |
/// | start      | all                  | ISO 8601 moment; without, the signal begins when it is read |
/// | name       | all                  | proposed name of the record, without commas; the kind's own without |
/// | seed       | all                  | whole, 0 to 2^53            |
/// | level      | all                  | dBFS, -120 to 0: a carrier's amplitude, or the power of the kind "noise" |
/// | offset     | carrier, fm, bursts  | Hz from the centre, at most half the rate either way |
/// | noise      | carrier, fm, bursts  | dBFS, -140 to 0: power of added noise; none without |
/// | deviation  | fm                   | Hz, 0 to half the rate      |
/// | modulation | fm                   | Hz of the sine that modulates, 0 to half the rate |
/// | burst      | bursts               | ms that the carrier is on, 0.01 to 3600000 |
/// | period     | bursts               | ms from one burst to the next, at least `burst`, up to 3600000 |
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
