#include <recorder/source/generatorparameters.h>

#include <recorder/source/isotime.h>

#include <QSet>
#include <QStringList>

#include <array>
#include <cmath>

namespace ZelkoRecorder {

namespace {

using Kind = GeneratorParameters::Kind;

struct KindWord
{
    Kind kind;
    QLatin1StringView word;
    QLatin1StringView recordName;
};

constexpr std::array<KindWord, 4> kindWords{{
    {Kind::Carrier, QLatin1StringView("carrier"), QLatin1StringView("Carrier")},
    {Kind::Fm, QLatin1StringView("fm"), QLatin1StringView("FM")},
    {Kind::Bursts, QLatin1StringView("bursts"), QLatin1StringView("Bursts")},
    {Kind::Noise, QLatin1StringView("noise"), QLatin1StringView("Noise")},
}};

enum KindFlag : unsigned {
    ForFm = 1U << static_cast<unsigned>(Kind::Fm),
    ForBursts = 1U << static_cast<unsigned>(Kind::Bursts),
    ForTones = (1U << static_cast<unsigned>(Kind::Carrier)) | ForFm | ForBursts,
    ForAll = ForTones | (1U << static_cast<unsigned>(Kind::Noise)),
};

struct NumberKey
{
    QLatin1StringView name;
    unsigned kinds;
    bool isWhole;
    double minimum;
    double maximum;
    void (*set)(GeneratorParameters&, double);
};

quint64 whole(double value)
{
    return static_cast<quint64>(value);
}

const std::array<NumberKey, 12> numberKeys{{
    {QLatin1StringView("rate"), ForAll, true, 1e3, 1e7, [](auto& p, double value) { p.sampleRate = whole(value); }},
    {QLatin1StringView("seconds"), ForAll, false, 1e-3, 86'400, [](auto& p, double value) { p.seconds = value; }},
    {QLatin1StringView("frequency"), ForAll, true, 0, 1e12,
     [](auto& p, double value) { p.centreFrequency = whole(value); }},
    {QLatin1StringView("bandwidth"), ForAll, true, 1, 1e7, [](auto& p, double value) { p.bandwidth = whole(value); }},
    {QLatin1StringView("seed"), ForAll, true, 0, 0x1p53, [](auto& p, double value) { p.seed = whole(value); }},
    {QLatin1StringView("level"), ForAll, false, -120, 0, [](auto& p, double value) { p.level = value; }},
    {QLatin1StringView("offset"), ForTones, false, -5e6, 5e6, [](auto& p, double value) { p.offset = value; }},
    {QLatin1StringView("noise"), ForTones, false, -140, 0, [](auto& p, double value) { p.noiseLevel = value; }},
    {QLatin1StringView("deviation"), ForFm, false, 0, 5e6, [](auto& p, double value) { p.deviation = value; }},
    {QLatin1StringView("modulation"), ForFm, false, 0, 5e6, [](auto& p, double value) { p.modulation = value; }},
    {QLatin1StringView("burst"), ForBursts, false, 0.01, 3.6e6,
     [](auto& p, double value) { p.burstMilliseconds = value; }},
    {QLatin1StringView("period"), ForBursts, false, 0.01, 3.6e6,
     [](auto& p, double value) { p.periodMilliseconds = value; }},
}};

/// Reads one text; `error` is empty as long as all is well.
class Reader
{
public:
    GeneratorParameters parameters;
    QString error;

    void readKind(const QString& word);
    void readPair(const QString& pair);
    void checkTogether();

private:
    void readNumber(const NumberKey& key, const QString& value);
    void readValue(const QString& key, const QString& value);
    void checkLimit(const char* key, double value, double limit, const char* limitName);

    QSet<QString> m_seen;
};

void Reader::readKind(const QString& word)
{
    for (const KindWord& known : kindWords) {
        if (word == known.word) {
            parameters.kind = known.kind;
            return;
        }
    }
    error = QStringLiteral("generator: unknown kind \"%1\"").arg(word);
}

void Reader::readPair(const QString& pair)
{
    const qsizetype equals = pair.indexOf(u'=');
    const QString key = pair.left(equals).trimmed();
    if (equals < 0) {
        error = QStringLiteral("generator: \"%1\" has no value").arg(key);
    } else if (m_seen.contains(key)) {
        error = QStringLiteral("generator: \"%1\" is given twice").arg(key);
    } else {
        readValue(key, pair.mid(equals + 1).trimmed());
    }
    m_seen.insert(key);
}

void Reader::readValue(const QString& key, const QString& value)
{
    if (key == u"name") {
        parameters.name = value;
        return;
    }
    if (key == u"start") {
        const std::optional<quint64> start = microsecondsFromIsoTime(value);
        parameters.startTime = start.value_or(0);
        if (!start) {
            error = QStringLiteral("generator: \"start\" is not an ISO 8601 moment since 1970: \"%1\"").arg(value);
        }
        return;
    }
    for (const NumberKey& known : numberKeys) {
        if (key == known.name) {
            readNumber(known, value);
            return;
        }
    }
    error = QStringLiteral("generator: unknown key \"%1\"").arg(key);
}

void Reader::readNumber(const NumberKey& key, const QString& value)
{
    if ((key.kinds & (1U << static_cast<unsigned>(parameters.kind))) == 0) {
        error = QStringLiteral("generator: \"%1\" means nothing for this kind").arg(key.name);
        return;
    }
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    // Written so that a NaN, which compares with nothing, is refused.
    const bool isInRange = number >= key.minimum && number <= key.maximum;
    if (!isNumber || !isInRange || (key.isWhole && number != std::floor(number))) {
        error = QStringLiteral("generator: \"%1\" must be a %2 from %3 to %4, not \"%5\"")
                    .arg(key.name, key.isWhole ? QStringLiteral("whole number") : QStringLiteral("number"),
                         QString::number(key.minimum, 'g', 17), QString::number(key.maximum, 'g', 17), value);
        return;
    }
    key.set(parameters, number);
}

void Reader::checkLimit(const char* key, double value, double limit, const char* limitName)
{
    if (error.isEmpty() && value > limit) {
        error = QStringLiteral("generator: \"%1\" must not be above %2, which is %3")
                    .arg(QLatin1StringView(key), QLatin1StringView(limitName), QString::number(limit, 'g', 17));
    }
}

void Reader::checkTogether()
{
    const auto rate = static_cast<double>(parameters.sampleRate);
    constexpr const char* half = "half the rate";
    checkLimit("bandwidth", static_cast<double>(parameters.bandwidth.value_or(1)), rate, "the rate");
    if (parameters.kind != Kind::Noise) {
        checkLimit("offset", std::abs(parameters.offset), rate / 2, half);
    }
    if (parameters.kind == Kind::Fm) {
        checkLimit("deviation", parameters.deviation, rate / 2, half);
        checkLimit("modulation", parameters.modulation, rate / 2, half);
    }
    if (parameters.kind == Kind::Bursts) {
        checkLimit("burst", parameters.burstMilliseconds, parameters.periodMilliseconds, "the period");
    }
}

} // namespace

std::optional<GeneratorParameters> GeneratorParameters::parse(const QString& text, QString* error)
{
    QStringList parts = text.split(u',');
    Reader reader;
    reader.readKind(parts.takeFirst().trimmed());
    for (const QString& part : std::as_const(parts)) {
        if (reader.error.isEmpty()) {
            reader.readPair(part);
        }
    }
    reader.checkTogether();
    if (reader.error.isEmpty()) {
        return reader.parameters;
    }
    if (error != nullptr) {
        *error = reader.error;
    }
    return std::nullopt;
}

qint64 GeneratorParameters::framesIn(double milliseconds) const
{
    return std::max(qint64{1}, qRound64(milliseconds * static_cast<double>(sampleRate) / 1'000));
}

QString GeneratorParameters::displayName() const
{
    if (!name.isEmpty()) {
        return name;
    }
    for (const KindWord& known : kindWords) {
        if (known.kind == kind) {
            return known.recordName;
        }
    }
    return {};
}

} // namespace ZelkoRecorder
