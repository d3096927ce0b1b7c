#include <zelkobase/connection/serverconnectiondata.h>

#include <zelkobase/connection/treelink.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/stringmap/stringitemmap.h>

#include <map>

namespace ZelkoCommon {

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
        connect(link.get(), &TreeLink::writeNotSent, this,
                [this, name](const QString& reason) { Q_EMIT writeNotSent(name, reason); });
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

bool ServerConnectionData::isDenied(const QString& subSystem) const
{
    const TreeLink* const link = d->find(subSystem);
    return link && link->isDenied();
}

} // namespace ZelkoCommon
