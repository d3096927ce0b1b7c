#include <zelkobase/connection/serverconnectiondata.h>

#include <zelkobase/connection/treelink.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/stringmap/stringitemmap.h>

#include <arpa/inet.h>

#include <map>

namespace ZelkoCommon {
namespace {

bool isAddress(const QString& host)
{
    in6_addr space;
    const QByteArray text = host.toLatin1();
    return inet_pton(AF_INET, text.constData(), &space) == 1 || inet_pton(AF_INET6, text.constData(), &space) == 1;
}

} // namespace

struct ServerConnectionData::Private
{
    std::shared_ptr<ZelkoConfiguration> configuration;
    std::map<QString, std::unique_ptr<TreeLink>> links;

    const TreeLink* find(const QString& subSystem) const
    {
        const auto found = links.find(subSystem);
        return found == links.end() ? nullptr : found->second.get();
    }
};

ServerConnectionData::ServerConnectionData(Orb& orb, Tree* tree, std::shared_ptr<ZelkoConfiguration> configuration,
                                           const LinkOptions& options, QObject* parent)
    : AbstractServerConnectionData(parent)
    , d(std::make_unique<Private>())
{
    // A link makes values by the names of their types, and a recorder has maps of these.
    zelko::registerItemMapTypes();
    registerStringItemMap();
    d->configuration = std::move(configuration);
    for (const auto& subSystem : d->configuration->SubSystems()) {
        auto link = std::make_unique<TreeLink>(orb, tree, subSystem, options);
        const QString name = subSystem.name;
        const QString devices = getClientBasePath(name, ConnectionType::Client) + QLatin1Char('/');
        connect(link.get(), &TreeLink::connected, this, [this, name] { Q_EMIT si_allTicsConnected(name); });
        connect(link.get(), &TreeLink::disconnected, this, [this, name] { Q_EMIT si_allTicsDisconnected(name); });
        connect(link.get(), &TreeLink::connectFailed, this,
                [this, name](const QString& reason) { Q_EMIT connectFailed(name, reason); });
        connect(link.get(), &TreeLink::writeRefused, this,
                [this, name](const QString& reason) { Q_EMIT writeRefused(name, reason); });
        connect(link.get(), &TreeLink::nodeCreated, this, [this, devices](const QString& path) {
            if (path.startsWith(devices) && path.indexOf(QLatin1Char('/'), devices.size()) < 0) {
                Q_EMIT si_deviceNodeAdded(path);
            }
        });
        d->links.emplace(name, std::move(link));
    }
}

ServerConnectionData::~ServerConnectionData()
{
    for (const auto& [name, link] : d->links) {
        link->stop();
    }
}

std::shared_ptr<ZelkoConfiguration> ServerConnectionData::GetConfiguration() const
{
    return d->configuration;
}

bool ServerConnectionData::isConnected(const QString& subSystem) const
{
    const TreeLink* const link = d->find(subSystem);
    return link && link->isConnected();
}

std::shared_ptr<IVtClient> ServerConnectionData::getVtClient(const QString& subSystem, ConnectionType) const
{
    const TreeLink* const link = d->find(subSystem);
    return link ? link->client() : nullptr;
}

VtConnectData ServerConnectionData::getConnData(const QString& subSystem, ConnectionType) const
{
    VtConnectData data;
    GetIPConnectionInformation(subSystem, data);
    return data;
}

QString ServerConnectionData::getClientBasePath(const QString& subSystem, ConnectionType) const
{
    return ZelkoConfiguration::MakeRootPath(subSystem) + zelko::names::zelkoDevice;
}

QString ServerConnectionData::GetDeviceBasePath(const QString& device) const
{
    return getClientBasePath(d->configuration->GetCurrentSubSystem(), ConnectionType::Client) + QLatin1Char('/') +
           device;
}

QString ServerConnectionData::GetBasePath(const QString& device) const
{
    return ZelkoConfiguration::MakeRootPath(d->configuration->GetCurrentSubSystem()) + zelko::names::zelkoCommand +
           QLatin1Char('/') + device + QLatin1Char('/');
}

bool ServerConnectionData::GetIPConnectionInformation(const QString& subSystem, VtConnectData& data) const
{
    const auto* const found =
        d->configuration->Find(subSystem.isEmpty() ? d->configuration->GetCurrentSubSystem() : subSystem);
    if (!found) {
        return false;
    }
    // A name is looked up by the ORB when it connects; the GUI thread does not wait for a name server.
    data = {found->host, isAddress(found->host) ? found->host : QString(), found->port};
    return true;
}

void ServerConnectionData::SetCredentials(const QString& subSystem, const LinkCredentials& credentials)
{
    if (const auto found = d->links.find(subSystem); found != d->links.end()) {
        found->second->setCredentials(credentials);
    }
}

void ServerConnectionData::SetCredentials(const LinkCredentials& credentials)
{
    for (const auto& [name, link] : d->links) {
        link->setCredentials(credentials);
    }
}

std::optional<Role> ServerConnectionData::GetRole(const QString& subSystem) const
{
    const TreeLink* const link = d->find(subSystem);
    return link ? link->role() : std::nullopt;
}

QString ServerConnectionData::lastError(const QString& subSystem) const
{
    const TreeLink* const link = d->find(subSystem);
    return link ? link->lastError() : QString();
}

} // namespace ZelkoCommon
