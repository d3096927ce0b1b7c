#include <chartcontrols/timeticks_p.h>

#include <QDateTime>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace timeticks {

namespace {

constexpr double millisecond = 1e3;
constexpr double second = 1e6;
constexpr double day = 86'400 * second;

// Those below a second are found by powers of ten.
constexpr int secondsBetween[] = {1,   2,   5,    10,   15,   30,    60,    120,   300,
                                  600, 900, 1800, 3600, 7200, 10800, 21600, 43200, 86400};

QDateTime localTime(double moment)
{
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::floor(moment / 1000)));
}

double roundBelowASecond(double least)
{
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (power * factor >= least) {
            return power * factor;
        }
    }
    return power * 10;
}

} // namespace

double distance(double least)
{
    if (least <= second / 2) {
        return roundBelowASecond(std::max(least, millisecond));
    }
    const auto found = std::lower_bound(std::begin(secondsBetween), std::end(secondsBetween),
                                        static_cast<int>(std::ceil(std::min(least, day) / second)));
    return least > day ? std::ceil(least / day) * day : *found * second;
}

double first(double moment, double distance)
{
    const double shift = localTime(moment).offsetFromUtc() * second;
    return std::ceil((moment + shift) / distance) * distance - shift;
}

QString text(double moment, double distance)
{
    if (distance >= day) {
        return localTime(moment).toString(QStringLiteral("yyyy-MM-dd"));
    }
    if (distance >= second) {
        return localTime(moment).toString(QStringLiteral("hh:mm:ss"));
    }
    return localTime(moment).toString(QStringLiteral("hh:mm:ss.zzz"));
}

} // namespace timeticks
