#include <zelkobase/service/serviceaddress.h>

namespace ZelkoCommon {

QString serviceReference(const QStringList& addresses, quint16 port)
{
    QStringList places;
    for (const QString& address : addresses) {
        const bool isV6 = address.contains(QLatin1Char(':'));
        // Written out, because without a version a reference means GIOP 1.0, which has no wide texts.
        places << (isV6 ? QStringLiteral(":1.2@[%1]:%2") : QStringLiteral(":1.2@%1:%2")).arg(address).arg(port);
    }
    return QStringLiteral("corbaloc:%1/%2").arg(places.join(QLatin1Char(',')), QLatin1String(recorderServiceKey));
}

} // namespace ZelkoCommon
