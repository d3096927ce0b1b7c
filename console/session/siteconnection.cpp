#include <console/session/siteconnection.h>

#include <utility>

namespace ZelkoConsole {

using ZelkoCommon::ZelkoConfiguration;

SiteConnection::SiteConnection(std::shared_ptr<ZelkoConfiguration> configuration)
    : m_configuration(std::move(configuration))
{}

SiteConnection::~SiteConnection() = default;

void SiteConnection::follow(AbstractServerConnectionData* carrier)
{
    m_carrier = carrier;
    const auto lost = std::exchange(m_connected, {});
    for (const QString& subSystem : lost) {
        Q_EMIT si_allTicsDisconnected(subSystem);
    }
    if (carrier) {
        connect(carrier, &AbstractServerConnectionData::si_allTicsConnected, this, &SiteConnection::connected);
        connect(carrier, &AbstractServerConnectionData::si_allTicsDisconnected, this, &SiteConnection::disconnected);
        connect(carrier, &AbstractServerConnectionData::si_deviceNodeAdded, this, &SiteConnection::si_deviceNodeAdded);
    }
}

std::shared_ptr<ZelkoConfiguration> SiteConnection::GetConfiguration() const
{
    return m_configuration;
}

bool SiteConnection::isConnected(const QString& subSystem) const
{
    return m_carrier && m_carrier->isConnected(subSystem);
}

std::shared_ptr<IVtClient> SiteConnection::getVtClient(const QString& subSystem, ConnectionType type) const
{
    return m_carrier ? m_carrier->getVtClient(subSystem, type) : nullptr;
}

void SiteConnection::connected(const QString& subSystem)
{
    m_connected.insert(subSystem);
    Q_EMIT si_allTicsConnected(subSystem);
}

void SiteConnection::disconnected(const QString& subSystem)
{
    m_connected.remove(subSystem);
    Q_EMIT si_allTicsDisconnected(subSystem);
}

} // namespace ZelkoConsole
