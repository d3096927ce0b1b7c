#include <console/session/unusablesite.h>

#include <console/session/siteconnection.h>

namespace ZelkoConsole {

using ZelkoCommon::ZelkoConfiguration;

UnusableSite::UnusableSite(const ZelkoConfiguration& site, const QString& reason, QObject* parent)
    : Session(parent)
    , m_reason(reason)
    , m_connection(std::make_shared<SiteConnection>(std::make_shared<ZelkoConfiguration>(site)))
{}

UnusableSite::~UnusableSite() = default;

QStringList UnusableSite::subSystems() const
{
    QStringList names;
    for (const auto& subSystem : m_connection->GetConfiguration()->SubSystems()) {
        names.append(subSystem.name);
    }
    return names;
}

SubSystemStatus UnusableSite::status(const QString& subSystem) const
{
    return subSystems().contains(subSystem) ? SubSystemStatus{LinkState::Unusable, m_reason} : SubSystemStatus();
}

std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> UnusableSite::connectionData() const
{
    return m_connection;
}

} // namespace ZelkoConsole
