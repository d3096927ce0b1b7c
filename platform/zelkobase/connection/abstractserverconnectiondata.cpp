#include <zelkobase/connection/abstractserverconnectiondata.h>

#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/names/valuenames.h>

#include <arpa/inet.h>

namespace ZelkoCommon {
namespace {

bool isAddress(const QString& host)
{
    in6_addr space;
    const QByteArray text = host.toLatin1();
    return inet_pton(AF_INET, text.constData(), &space) == 1 || inet_pton(AF_INET6, text.constData(), &space) == 1;
}

} // namespace

AbstractServerConnectionData::AbstractServerConnectionData(QObject* parent)
    : QObject(parent)
{}

AbstractServerConnectionData::~AbstractServerConnectionData() = default;

VtConnectData AbstractServerConnectionData::getConnData(const QString& subSystem, ConnectionType) const
{
    VtConnectData data;
    GetIPConnectionInformation(subSystem, data);
    return data;
}

QString AbstractServerConnectionData::getClientBasePath(const QString& subSystem, ConnectionType) const
{
    return ZelkoConfiguration::MakeRootPath(subSystem) + zelko::names::zelkoDevice;
}

QString AbstractServerConnectionData::GetDeviceBasePath(const QString& device) const
{
    return getClientBasePath(GetConfiguration()->GetCurrentSubSystem(), ConnectionType::Client) + QLatin1Char('/') +
           device;
}

QString AbstractServerConnectionData::GetBasePath(const QString& device) const
{
    return ZelkoConfiguration::MakeRootPath(GetConfiguration()->GetCurrentSubSystem()) + zelko::names::zelkoCommand +
           QLatin1Char('/') + device + QLatin1Char('/');
}

bool AbstractServerConnectionData::GetIPConnectionInformation(const QString& subSystem, VtConnectData& data) const
{
    const auto configuration = GetConfiguration();
    const auto* const found =
        configuration->Find(subSystem.isEmpty() ? configuration->GetCurrentSubSystem() : subSystem);
    if (!found) {
        return false;
    }
    // A name is looked up by the ORB when it connects; the GUI thread does not wait for a name server.
    data = {found->host, isAddress(found->host) ? found->host : QString(), found->port};
    return true;
}

} // namespace ZelkoCommon
