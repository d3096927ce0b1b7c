#include <console/window/timezonetext.h>

#include <console/translation.h>

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
    if (offset == 0 && name.contains(QLatin1String("UTC"))) {
        return tr("Times in %1").arg(name);
    }
    return tr("Times in %1 (now %2)").arg(name, offsetText(offset));
}

} // namespace ZelkoConsole
