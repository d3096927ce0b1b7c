#include <observerbase/datetime.h>

#include <chrono>
#include <cmath>

namespace Vorn {

QDateTime DateTime::fromMicroseconds(quint64 microseconds)
{
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(microseconds / 1000));
}

quint64 DateTime::toMicroseconds(const QDateTime& time)
{
    const qint64 milliseconds = time.isValid() ? time.toMSecsSinceEpoch() : 0;
    return milliseconds > 0 ? static_cast<quint64>(milliseconds) * 1000 : 0;
}

qint64 DateTime::microsecToSec(double microseconds)
{
    const double seconds = microseconds / 1e6;
    return std::abs(seconds) < 9e18 ? static_cast<qint64>(seconds) : 0; // a NaN fails the comparison
}

quint64 DateTime::currentMicroseconds()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<quint64>(std::chrono::duration_cast<std::chrono::microseconds>(now).count());
}

QString DateTime::UTCtoLocalString(quint64 microseconds)
{
    return microseconds == 0 ? QString()
                             : fromMicroseconds(microseconds).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

} // namespace Vorn
