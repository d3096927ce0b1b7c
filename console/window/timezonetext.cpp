#include <console/window/timezonetext.h>

#include <QCoreApplication>
#include <QTimeZone>

namespace ZelkoConsole {
namespace {

QString offsetText(int seconds)
{
    const int minutes = std::abs(seconds) / 60;
    return QStringLiteral("UTC%1%2:%3")
        .arg(seconds < 0 ? QLatin1Char('-') : QLatin1Char('+'))
        .arg(minutes / 60, 2, 10, QLatin1Char('0'))
        .arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

QString timeZoneText(const QTimeZone& zone, const QDateTime& when)
{
    const int offset = zone.offsetFromUtc(when);
    const QString name = QString::fromLatin1(zone.id());
    const QString text = offset == 0 && name.contains(QLatin1String("UTC"))
                             ? name
                             : QStringLiteral("%1 (%2)").arg(name, offsetText(offset));
    return QCoreApplication::translate("ZelkoConsole::TimeZoneText", "Times in %1").arg(text);
}

} // namespace ZelkoConsole
