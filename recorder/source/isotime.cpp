#include <recorder/source/isotime.h>

#include <QDateTime>
#include <QRegularExpression>

namespace ZelkoRecorder {

namespace {

int fractionAsMicroseconds(QStringView digits)
{
    return digits.toString().leftJustified(6, u'0', true).toInt();
}

/// Not `QTime::fromString`, which takes 24:00 for the beginning of the same day.
QTime timeOfDay(const QRegularExpressionMatch& match)
{
    const auto number = [&match](QStringView group) { return match.capturedView(group).toInt(); };
    return {number(u"hours"), number(u"minutes"), number(u"seconds")};
}

std::optional<qint64> zoneSeconds(const QRegularExpressionMatch& match)
{
    if (match.capturedView(u"sign").isEmpty()) {
        return 0;
    }
    const int hours = match.capturedView(u"zoneHours").toInt();
    const int minutes = match.capturedView(u"zoneMinutes").toInt();
    if (hours > 14 || minutes > 59) {
        return std::nullopt;
    }
    const qint64 seconds = qint64(hours) * 3600 + qint64(minutes) * 60;
    return match.capturedView(u"sign") == u"-" ? -seconds : seconds;
}

const QRegularExpression& pattern()
{
    static const QRegularExpression expression(QStringLiteral(
        "\\A(?<date>[0-9]{4}-[0-9]{2}-[0-9]{2})T(?<hours>[0-9]{2}):(?<minutes>[0-9]{2}):(?<seconds>[0-9]{2})"
        "(?:\\.(?<fraction>[0-9]+))?"
        "(?:Z|(?<sign>[+-])(?<zoneHours>[0-9]{2}):(?<zoneMinutes>[0-9]{2}))?\\z"));
    return expression;
}

} // namespace

std::optional<quint64> microsecondsFromIsoTime(QStringView text)
{
    // Far more digits than any clock gives; the limit keeps the pattern from chewing on a text of megabytes.
    constexpr qsizetype longestText = 64;
    if (text.size() > longestText) {
        return std::nullopt;
    }
    const QRegularExpressionMatch match = pattern().match(text.toString());
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const QDate date = QDate::fromString(match.captured(u"date"), Qt::ISODate);
    const QTime time = timeOfDay(match);
    const std::optional<qint64> zone = zoneSeconds(match);
    if (!date.isValid() || !time.isValid() || !zone) {
        return std::nullopt;
    }
    const qint64 seconds = QDateTime(date, time, Qt::UTC).toSecsSinceEpoch() - *zone;
    if (seconds < 0) {
        return std::nullopt;
    }
    constexpr quint64 perSecond = 1'000'000;
    const int fraction = fractionAsMicroseconds(match.capturedView(u"fraction"));
    return static_cast<quint64>(seconds) * perSecond + static_cast<quint64>(fraction);
}

} // namespace ZelkoRecorder
