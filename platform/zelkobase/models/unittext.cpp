#include <zelkobase/models/unittext.h>

#include <observerbase/datetime.h>

#include <QLatin1Char>

#include <array>

namespace ZelkoCommon::unittext {
namespace {

constexpr quint64 microsecondsPerSecond = 1000 * 1000;
constexpr quint64 secondsPerMinute = 60;
constexpr quint64 secondsPerDay = 24 * 60 * 60;

// A fraction given in units of 10^-digits, without the zeros at its end.
QString withFraction(quint64 whole, quint64 fraction, int digits)
{
    QString text = QString::number(whole);
    if (fraction > 0) {
        text += QLatin1Char('.') + QStringLiteral("%1").arg(fraction, digits, 10, QLatin1Char('0'));
        while (text.endsWith(QLatin1Char('0'))) {
            text.chop(1);
        }
    }
    return text;
}

QString clock(quint64 seconds)
{
    const auto twoDigits = [](quint64 number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    return twoDigits(seconds / 3600) + QLatin1Char(':') + twoDigits(seconds / 60 % 60) + QLatin1Char(':') +
           twoDigits(seconds % 60);
}

} // namespace

QString size(quint64 bytes)
{
    static constexpr std::array units{" Byte", " kByte", " MByte", " GByte", " TByte", " PByte", " EByte"};
    std::size_t unit = 0;
    quint64 scale = 1;
    while (unit + 1 < units.size() && bytes / scale >= 1024) {
        scale *= 1024;
        ++unit;
    }
    // Rounded down, so that no size is shown as more than it is. The remainder is below 2^60, a hundredfold would not
    // fit.
    const quint64 hundredths = scale < 100 ? 0 : (bytes % scale) / (scale / 128) * 100 / 128;
    return withFraction(bytes / scale, hundredths, 2) + QLatin1String(units[unit]);
}

QString hertz(quint64 hertz)
{
    static constexpr std::array units{" Hz", " kHz", " MHz", " GHz", " THz"};
    std::size_t unit = 0;
    quint64 scale = 1;
    while (unit + 1 < units.size() && hertz / scale >= 1000) {
        scale *= 1000;
        ++unit;
    }
    return withFraction(hertz / scale, hertz % scale, static_cast<int>(unit) * 3) + QLatin1String(units[unit]);
}

QString duration(quint64 microseconds)
{
    const quint64 seconds = microseconds / microsecondsPerSecond;
    if (seconds < secondsPerMinute) {
        return withFraction(seconds, microseconds % microsecondsPerSecond / 1000, 3) + QLatin1String(" s");
    }
    const quint64 days = seconds / secondsPerDay;
    return (days > 0 ? QStringLiteral("%1 d ").arg(days) : QString()) + clock(seconds % secondsPerDay);
}

QString moment(quint64 microseconds)
{
    return Vorn::DateTime::UTCtoLocalString(microseconds);
}

} // namespace ZelkoCommon::unittext
