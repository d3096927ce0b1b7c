#include <mapwidgets/timeticks.h>

#include <mapwidgets/roundnumber.h>

#include <QDateTime>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace timeticks {

namespace {

constexpr double millisecond = 1e3;
constexpr double second = 1e6;
constexpr double minute = 60 * second;
constexpr double day = 86'400 * second;

// Those below a second and above a day are found by powers of ten.
constexpr int secondsBetween[] = {1,   2,   5,    10,   15,   30,    60,    120,   300,
                                  600, 900, 1800, 3600, 7200, 10800, 21600, 43200, 86400};

long long microsecondsOf(long long moment)
{
    const long long rest = moment % 1'000'000;
    return rest < 0 ? rest + 1'000'000 : rest;
}

QDateTime localTime(long long moment)
{
    return QDateTime::fromMSecsSinceEpoch((moment - microsecondsOf(moment)) / 1000);
}

double shiftAt(double moment)
{
    return localTime(whole(moment)).offsetFromUtc() * second;
}

// The clocks may be changed between a moment and the one it is rounded to.
double fromLocal(double local, double shift)
{
    return local - shiftAt(local - shift);
}

QString dateOf(const QDateTime& time)
{
    return time.toString(QStringLiteral("yyyy-MM-dd"));
}

QString withDigits(long long moment, double distance)
{
    const QDateTime time = localTime(moment);
    const QString fraction = QStringLiteral("%1").arg(microsecondsOf(moment), 6, 10, QLatin1Char('0'));
    if (distance >= minute) {
        return time.toString(QStringLiteral("hh:mm"));
    }
    QString seconds = time.toString(QStringLiteral("hh:mm:ss"));
    if (distance >= second) {
        return seconds;
    }
    return seconds + QLatin1Char('.') + (distance >= millisecond ? fraction.left(3) : fraction);
}

} // namespace

// Microseconds as a double keep their last digit up to the year 2255; what an integer cannot hold has no date that
// anybody could read.
long long whole(double moment)
{
    constexpr double farthest = 9.2e18;
    return std::llround(std::clamp(moment, -farthest, farthest));
}

double distance(double least)
{
    if (least <= second / 2) {
        return roundNumber(std::max(least, 1.0));
    }
    if (least > day) {
        return roundNumber(least / day) * day;
    }
    return *std::lower_bound(std::begin(secondsBetween), std::end(secondsBetween),
                             static_cast<int>(std::ceil(least / second))) *
           second;
}

// A local time that is left out where clocks are put forward is no tick.
double first(double moment, double distance)
{
    const double shift = shiftAt(moment);
    const double local = std::ceil((moment + shift) / distance) * distance;
    const double found = fromLocal(local, shift);
    const bool exists = found + shiftAt(found) == local;
    return exists ? found : fromLocal(local + distance, shift);
}

double next(double tick, double distance)
{
    const double moment = tick + distance;
    const double shift = shiftAt(moment);
    return fromLocal(std::round((moment + shift) / distance) * distance, shift);
}

QString text(double moment, double distance)
{
    const QDateTime time = localTime(whole(moment));
    const bool isMidnight = time.time() == QTime(0, 0) && microsecondsOf(whole(moment)) == 0;
    if (distance >= day || isMidnight) {
        return dateOf(time);
    }
    const QString digits = withDigits(whole(moment), distance);
    return shiftAt(moment) == shiftAt(moment - distance) ? digits : digits + ' ' + time.timeZoneAbbreviation();
}

// Digits are as wide as each other in the fonts of user interfaces.
QString longestText(double distance, bool isWithinDay)
{
    const bool hasDates = distance >= day || (distance >= second && !isWithinDay);
    return hasDates ? QStringLiteral("0000-00-00") : withDigits(0, distance);
}

QString endText(double moment, double extent)
{
    constexpr double parts = 1000;
    return extent >= 2 * day ? dateOf(localTime(whole(moment)))
                             : withDigits(whole(moment), std::min(extent / parts, second));
}

QString dateAndTime(long long moment)
{
    const QDateTime time = localTime(moment);
    return dateOf(time) + ' ' + withDigits(moment, 1) + ' ' + time.timeZoneAbbreviation();
}

QStringList timesOfDay(long long moment)
{
    return {withDigits(moment, 1), withDigits(moment, millisecond), withDigits(moment, second)};
}

bool isSameDay(double moment, double other)
{
    return localTime(whole(moment)).date() == localTime(whole(other)).date();
}

QStringList dates(double start, double stop)
{
    const QDateTime from = localTime(whole(start));
    const QDateTime to = localTime(whole(stop));
    const QString zone = from.timeZoneAbbreviation();
    const QString begin = dateOf(from) + ' ' + zone;
    QStringList texts{begin, zone};
    if (to.timeZoneAbbreviation() != zone) {
        texts.prepend(begin + QStringLiteral(" – ") + dateOf(to) + ' ' + to.timeZoneAbbreviation());
    } else if (from.date() != to.date()) {
        texts.prepend(dateOf(from) + QStringLiteral(" – ") + dateOf(to) + ' ' + zone);
    }
    return texts;
}

} // namespace timeticks
