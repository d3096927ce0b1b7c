#include <zelkobase/service/serviceaddress.h>

namespace ZelkoCommon {
namespace {

// The version is written out, because without one a reference means GIOP 1.0, which has no wide texts.
QString place(const char* protocol, const QString& host, quint16 port)
{
    const bool isV6 = host.contains(QLatin1Char(':'));
    return (isV6 ? QStringLiteral("%1:1.2@[%2]:%3") : QStringLiteral("%1:1.2@%2:%3"))
        .arg(QLatin1String(protocol), host)
        .arg(port);
}

QString reference(const QString& places)
{
    return QStringLiteral("corbaloc:%1/%2").arg(places, QLatin1String(recorderServiceKey));
}

} // namespace

QString serviceReference(const QStringList& addresses, quint16 port)
{
    QStringList places;
    for (const QString& address : addresses) {
        places << place("", address, port);
    }
    return reference(places.join(QLatin1Char(',')));
}

QString tlsServiceReference(const QString& host, quint16 port)
{
    return reference(place("ssliop", host, port));
}

} // namespace ZelkoCommon
